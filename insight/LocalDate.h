// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Dates and times of the wall clock that the logs were recorded by. They carry no zone: a day is a
// day of the calendar, however many hours it has, so nothing here knows of summer time. Years are
// those of the Gregorian calendar, 1 to 9999. None raises anything.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace logbook::insight {

using LocalTime = std::chrono::local_seconds;
using LocalDay = std::chrono::local_days;

// A day as people type it, "YYYY-MM-DD"; nothing for any other text or a day that does not exist.
std::optional<LocalDay> ParseDay(std::string_view text);

// "YYYY-MM-DD", and "YYYY-MM-DDTHH:MM:SS".
std::string DayText(LocalDay day);
std::string TimeText(LocalTime when);

inline LocalDay DayOf(LocalTime when) {
  return std::chrono::floor<std::chrono::days>(when);
}

// The same day of the month so many months later; the month's last day where it is shorter, so
// that a month after 31 January is 28 or 29 February.
LocalDay AddMonths(LocalDay day, int months);

// The day that the machine's clock and zone show now.
LocalDay Today();

}  // namespace logbook::insight
