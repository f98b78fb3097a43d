// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <charconv>

#include "insight/RowNames.h"
#include "insight/SettingsText.h"
#include "insight/Upkeep.h"

namespace logbook::insight {
namespace {

constexpr int kMostDays = 36525;

struct Unit {
  std::string_view one;
  std::string_view many;
  int days;
  int months;
};

constexpr std::array kUnits = {
    Unit{"day", "days", 1, 0},
    Unit{"week", "weeks", 7, 0},
    Unit{"month", "months", 0, 1},
    Unit{"year", "years", 0, 12},
};

const Unit* FindUnit(std::string_view name) {
  if (name.empty()) return &kUnits.front();
  for (const Unit& unit : kUnits) {
    if (SameName(name, unit.one) || SameName(name, unit.many)) return &unit;
  }
  return nullptr;
}

// Decimal digits at the beginning, which are taken away; nothing without any or with too many.
std::optional<int> TakeNumber(std::string_view& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

// The item that a label or a number names; -1 for no item.
int FindItem(std::string_view name, const std::vector<std::string>& labels) {
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (SameName(name, labels[i]) || name == std::to_string(i)) return static_cast<int>(i);
  }
  return -1;
}

void TakeItem(std::string_view file, const SettingsEntry& entry, Intervals& intervals) {
  const int item = FindItem(entry.key, TickLabels());
  if (item < 0) throw SettingsError(file, entry.line, "there is no item \"" + entry.key + "\"");
  std::optional<Interval>& place = intervals.items[static_cast<std::size_t>(item)];
  if (place) throw SettingsError(file, entry.line, "the item has an interval already");
  place = ParseInterval(entry.value);
  if (!place) {
    throw SettingsError(file, entry.line,
                        "expected an interval such as \"30 days\", \"2 weeks\", \"6 months\" or "
                        "\"1 year\"");
  }
}

void TakeSoon(std::string_view file, const SettingsEntry& entry, Intervals& intervals) {
  if (!SameName(entry.key, "Soon")) throw SettingsError(file, entry.line, "the only key is Soon");
  std::string_view rest = entry.value;
  const std::optional<int> number = TakeNumber(rest);
  if (!number || !rest.empty() || *number > kMostDays) {
    throw SettingsError(file, entry.line, "expected a number of days");
  }
  intervals.soon = *number;
}

}  // namespace

LocalDay Interval::After(LocalDay day) const {
  return (months == 0 ? day : AddMonths(day, months)) + std::chrono::days(days);
}

std::optional<Interval> ParseInterval(std::string_view text) {
  const std::optional<int> number = TakeNumber(text);
  if (!number) return std::nullopt;
  const std::size_t word = text.find_first_not_of(' ');
  const Unit* unit = FindUnit(word == std::string_view::npos ? "" : text.substr(word));
  if (unit == nullptr || *number < 1 || *number > kMostDays) return std::nullopt;
  const Interval interval{*number * unit->days, *number * unit->months};
  if (interval.days > kMostDays || interval.months > 1200) return std::nullopt;
  return interval;
}

std::string IntervalText(const Interval& interval) {
  const int number = interval.months > 0 ? interval.months : interval.days;
  const Unit& unit = kUnits[interval.months > 0 ? 2 : 0];
  return std::to_string(number).append(" ").append(number == 1 ? unit.one : unit.many);
}

Intervals ParseIntervals(std::string_view file, std::string_view text) {
  Intervals intervals;
  for (const SettingsSection& section : ParseSettings(file, text)) {
    const bool items = SameName(section.name, "Intervals");
    if (!items && !SameName(section.name, "Due")) {
      const int line = section.line == 0 ? section.entries.front().line : section.line;
      throw SettingsError(file, line, "the sections are [Intervals] and [Due]");
    }
    for (const SettingsEntry& entry : section.entries) {
      items ? TakeItem(file, entry, intervals) : TakeSoon(file, entry, intervals);
    }
  }
  return intervals;
}

}  // namespace logbook::insight
