// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Axis.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "insight/Series.h"

namespace logbook::insight {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::year_month_day;

// The number nearest to a power of ten. The platforms' pow() differ in the last bit, and a drawing
// shows that where a value lies just between two dots.
double PowerOfTen(int exponent) {
  const std::string text = "1e" + std::to_string(exponent);
  double power = 0;
  std::from_chars(text.data(), text.data() + text.size(), power);
  return power;
}

// The round number 1, 2 or 5 times a power of ten that is not smaller.
double RoundStep(double step) {
  const double power = PowerOfTen(static_cast<int>(std::floor(std::log10(step))));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (step <= factor * power * (1 + 1e-9)) return factor * power;
  }
  return 10 * power;
}

// Steps of a time axis: so many hours, or so many months.
struct TimeStep {
  int hours = 0;
  int months = 0;
};

constexpr auto kTimeSteps = std::to_array<TimeStep>({
    {1, 0},   {3, 0},   {6, 0},    {12, 0},   {24, 0},   {48, 0},    {168, 0},   {336, 0},
    {0, 1},   {0, 2},   {0, 3},    {0, 6},    {0, 12},   {0, 24},    {0, 60},    {0, 120},
    {0, 240}, {0, 600}, {0, 1200}, {0, 2400}, {0, 6000}, {0, 12000}, {0, 24000}, {0, 60000},
});

// The last tick of these steps that is not later.
LocalTime TickBefore(LocalTime when, TimeStep step) {
  if (step.months > 0) {
    const year_month_day date(DayOf(when));
    const int month = static_cast<int>(date.year()) * 12 + static_cast<int>(unsigned(date.month()));
    const int first = (month - 1) / step.months * step.months;
    return LocalDay(year_month_day{std::chrono::year(first / 12),
                                   std::chrono::month(static_cast<unsigned>(first % 12 + 1)),
                                   std::chrono::day(1)});
  }
  // Weeks begin on a Monday; 1970-01-05 is one.
  const LocalTime origin = LocalTime(days(4));
  const auto length = hours(step.hours);
  const auto count = (when - origin) / length;
  const LocalTime tick = origin + count * length;
  return tick > when ? tick - length : tick;
}

LocalTime NextTick(LocalTime tick, TimeStep step) {
  if (step.months > 0) return AddMonths(DayOf(tick), step.months);
  return tick + hours(step.hours);
}

std::string TickLabel(LocalTime tick, TimeStep step) {
  const std::string text = TimeText(tick);
  if (step.months >= 12) return text.substr(0, 4);
  if (step.months > 0) return text.substr(0, 7);
  if (step.hours >= 24) return text.substr(0, 10);
  return text.substr(5, 5) + ' ' + text.substr(11, 5);
}

std::vector<Tick> TicksOf(LocalTime first, LocalTime last, TimeStep step, std::size_t most) {
  std::vector<Tick> ticks;
  for (LocalTime tick = TickBefore(first, step); tick <= last; tick = NextTick(tick, step)) {
    if (tick >= first) ticks.push_back({DaysOf(tick), TickLabel(tick, step)});
    if (ticks.size() > most) break;
  }
  return ticks;
}

}  // namespace

Axis ValueAxis(std::span<const double> values, int ticks) {
  double low = 0;
  double high = 1;
  if (!values.empty()) {
    low = *std::min_element(values.begin(), values.end());
    high = *std::max_element(values.begin(), values.end());
  }
  // What is smaller than a step can be made from counts as no width.
  constexpr double kSmallest = 1e-290;
  const double width = std::max(std::abs(low), std::abs(high));
  if (high - low <= std::max(width * 1e-9, kSmallest)) {
    const double room = width < kSmallest ? 1 : width * 0.05;
    low -= room;
    high += room;
  }
  // Half the width first: the whole may be too large for a number.
  const double step = RoundStep((high / 2 - low / 2) / std::max(1, ticks) * 2);
  const auto from = std::floor(low / step + 1e-9);
  const auto to = std::ceil(high / step - 1e-9);
  Axis axis{from * step, to * step, {}};
  const auto steps = static_cast<int>(to - from);
  for (int i = 0; i <= steps; ++i) {
    const double value = (from + i) * step;
    axis.ticks.push_back({value, ShortNumber(value)});
  }
  return axis;
}

Axis TimeAxis(LocalTime first, LocalTime last, int ticks) {
  if (last <= first) {
    first -= hours(12);
    last += hours(12);
  }
  const auto most = static_cast<std::size_t>(std::max(1, ticks));
  Axis axis{DaysOf(first), DaysOf(last), {}};
  for (const TimeStep step : kTimeSteps) {
    // What would give far too many ticks is not counted out.
    const double length = step.months > 0 ? step.months * 30.0 : step.hours / 24.0;
    if ((axis.high - axis.low) / length > 2.0 * static_cast<double>(most) + 2) continue;
    axis.ticks = TicksOf(first, last, step, most);
    if (axis.ticks.size() <= most) break;
  }
  return axis;
}

std::string ShortNumber(double value, int digits) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                 value == 0 ? 0.0 : value, std::chars_format::general, digits);
  return {buffer.data(), end.ptr};
}

}  // namespace logbook::insight
