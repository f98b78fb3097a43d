// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/DatePart.h"

#include <array>

namespace logbook::insight {
namespace {

namespace chrono = std::chrono;

constexpr std::string_view kShape = "####-##-##T##:##:##";

bool HasShape(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char byte = text[i];
    const bool fits = kShape[i] == '#' ? byte >= '0' && byte <= '9'
                                       : byte == kShape[i] || (kShape[i] == 'T' && byte == ' ');
    if (!fits) return false;
  }
  return true;
}

// The number of two or four digits; the default where the text ends before.
int NumberAt(std::string_view text, std::size_t place, std::size_t count, int default_value) {
  if (text.size() < place + count) return default_value;
  int number = 0;
  for (const char digit : text.substr(place, count)) number = number * 10 + (digit - '0');
  return number;
}

}  // namespace

std::optional<DatePart> ParseDatePart(std::string_view text) {
  const std::size_t size = text.size();
  const bool known = size == 4 || size == 7 || size == 10 || size == 16 || size == 19;
  if (!known || !HasShape(text)) return std::nullopt;
  const chrono::year year(NumberAt(text, 0, 4, 0));
  const chrono::month month(static_cast<unsigned>(NumberAt(text, 5, 2, 1)));
  const chrono::day day(static_cast<unsigned>(NumberAt(text, 8, 2, 1)));
  const chrono::year_month_day date(year, month, day);
  const int hour = NumberAt(text, 11, 2, 0);
  const int minute = NumberAt(text, 14, 2, 0);
  const int second = NumberAt(text, 17, 2, 0);
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  DatePart part;
  part.Begin = chrono::local_days(date) + chrono::hours(hour) + chrono::minutes(minute) +
               chrono::seconds(second);
  if (size == 4) part.End = chrono::local_days(date + chrono::years(1));
  if (size == 7) part.End = chrono::local_days(date + chrono::months(1));
  if (size == 10) part.End = part.Begin + chrono::days(1);
  if (size == 16) part.End = part.Begin + chrono::minutes(1);
  if (size == 19) part.End = part.Begin + chrono::seconds(1);
  return part;
}

}  // namespace logbook::insight
