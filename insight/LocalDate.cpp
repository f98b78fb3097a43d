// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LocalDate.h"

#include <ctime>

#include "text/TextParts.h"

namespace logbook::insight {
namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::year;
using std::chrono::year_month_day;

// So many digits from a place on, as a number; minus one if there are others than digits.
int NumberAt(std::string_view text, std::size_t from, std::size_t count) {
  int number = 0;
  for (const char digit : text.substr(from, count)) {
    if (digit < '0' || digit > '9') return -1;
    number = number * 10 + (digit - '0');
  }
  return number;
}

}  // namespace

std::optional<LocalDay> ParseDay(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  const int year_number = NumberAt(text, 0, 4);
  const int month_number = NumberAt(text, 5, 2);
  const int day_number = NumberAt(text, 8, 2);
  if (year_number < 1 || month_number < 1 || day_number < 1) return std::nullopt;
  const year_month_day date{year(year_number), month(static_cast<unsigned>(month_number)),
                            day(static_cast<unsigned>(day_number))};
  if (!date.ok()) return std::nullopt;
  return LocalDay(date);
}

std::string DayText(LocalDay date) {
  const year_month_day parts(date);
  const int year_number = static_cast<int>(parts.year());
  return (year_number > 9999 ? std::to_string(year_number) : LastDigits(year_number, 4)) + '-' +
         LastDigits(static_cast<int>(static_cast<unsigned>(parts.month())), 2) + '-' +
         LastDigits(static_cast<int>(static_cast<unsigned>(parts.day())), 2);
}

std::string TimeText(LocalTime when) {
  const std::chrono::hh_mm_ss time(when - DayOf(when));
  return DayText(DayOf(when)) + 'T' + LastDigits(static_cast<int>(time.hours().count()), 2) + ':' +
         LastDigits(static_cast<int>(time.minutes().count()), 2) + ':' +
         LastDigits(static_cast<int>(time.seconds().count()), 2);
}

LocalDay AddMonths(LocalDay date, int months) {
  const year_month_day parts(date);
  const std::chrono::year_month target =
      std::chrono::year_month(parts.year(), parts.month()) + std::chrono::months(months);
  const day last = (target / std::chrono::last).day();
  return LocalDay(target / (parts.day() < last ? parts.day() : last));
}

LocalDay Today() {
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  if (local == nullptr) return LocalDay{};
  return LocalDay(year_month_day{year(local->tm_year + 1900),
                                 month(static_cast<unsigned>(local->tm_mon + 1)),
                                 day(static_cast<unsigned>(local->tm_mday))});
}

}  // namespace logbook::insight
