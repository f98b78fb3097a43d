// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Calendar.h"

#include <charconv>
#include <cstddef>
#include <ctime>

namespace logbook::host {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hh_mm_ss;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::year_month_day;

struct Parts {
  int year, month, day, hour, minute, second;
};

Parts PartsOf(LocalTime time) {
  const local_days day = floor<days>(time);
  const year_month_day date{day};
  const hh_mm_ss clock{time - day};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          static_cast<int>(clock.hours().count()),
          static_cast<int>(clock.minutes().count()),
          static_cast<int>(clock.seconds().count())};
}

LocalTime TimeOf(const Parts& parts) {
  const year_month_day date{std::chrono::year{parts.year},
                            std::chrono::month{static_cast<unsigned>(parts.month)},
                            std::chrono::day{static_cast<unsigned>(parts.day)}};
  return local_days{date} + hours{parts.hour} + minutes{parts.minute} + seconds{parts.second};
}

std::string Padded(int number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

std::string ClockText(const Parts& parts) {
  return Padded(parts.hour, 2) + ":" + Padded(parts.minute, 2) + ":" + Padded(parts.second, 2);
}

}  // namespace

LocalTime Now() {
  const std::time_t now = std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  return TimeOf({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                 local.tm_sec});
}

std::optional<LocalTime> ParseTime(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00";
  constexpr std::size_t kDateSize = 10;
  std::string whole(text);
  if (text.size() == kDateSize) whole += "T17:00:00";
  if (whole.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool is_digit = whole[i] >= '0' && whole[i] <= '9';
    if (kForm[i] == '0' ? !is_digit : whole[i] != kForm[i]) return std::nullopt;
  }
  const auto number = [&](std::size_t at, std::size_t size) {
    int value = 0;
    std::from_chars(whole.data() + at, whole.data() + at + size, value);
    return value;
  };
  const Parts parts = {number(0, 4),  number(5, 2),  number(8, 2),
                       number(11, 2), number(14, 2), number(17, 2)};
  const LocalTime time = TimeOf(parts);
  // A day or an hour that does not exist runs over into another one.
  const Parts back = PartsOf(time);
  if (back.month != parts.month || back.day != parts.day || back.hour != parts.hour ||
      back.minute != parts.minute || back.second != parts.second) {
    return std::nullopt;
  }
  return time;
}

std::string FolderDate(LocalTime time) {
  const Parts parts = PartsOf(time);
  return Padded(parts.year % 100, 2) + Padded(parts.month, 2) + Padded(parts.day, 2);
}

std::string LogFileDate(LocalTime time) {
  const Parts parts = PartsOf(time);
  return Padded(parts.month, 2) + "/" + Padded(parts.day, 2) + "/" + Padded(parts.year, 4) + " " +
         ClockText(parts);
}

std::string StampText(LocalTime time) {
  const Parts parts = PartsOf(time);
  return Padded(parts.year, 4) + "/" + Padded(parts.month, 2) + "/" + Padded(parts.day, 2) + " " +
         ClockText(parts);
}

}  // namespace logbook::host
