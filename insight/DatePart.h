// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A year, month, day, hour, minute or second of the local calendar as people type it. Pure.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace logbook::insight {

struct DatePart {
  std::chrono::local_seconds Begin{};
  std::chrono::local_seconds End{};  // the first second behind it
};

// The part of "YYYY", "YYYY-MM", "YYYY-MM-DD", "YYYY-MM-DDTHH:MM" or "YYYY-MM-DDTHH:MM:SS" (with
// "T" or a blank); nothing for any other text and for days and hours that do not exist. Raises
// nothing.
std::optional<DatePart> ParseDatePart(std::string_view text);

}  // namespace logbook::insight
