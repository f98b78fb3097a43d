// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Trend.h"

#include <algorithm>

namespace logbook::insight {
namespace {

// The values and what always belongs into the drawing beside them.
std::vector<double> Drawn(const Trend& trend) {
  std::vector<double> drawn;
  for (const SeriesPoint& point : trend.series.points) {
    if (point.value) drawn.push_back(*point.value);
  }
  if (trend.control) {
    drawn.push_back(trend.control->lower);
    drawn.push_back(trend.control->upper);
  }
  return drawn;
}

void AddAround(std::vector<LevelLine>& lines, LevelLine::Kind kind, const Limits& limits,
               const std::optional<Amount>& amount) {
  if (!amount) return;
  const double distance = amount->Of(limits.reference);
  if (limits.side != Limits::Side::kAbove) lines.push_back({kind, limits.reference - distance});
  if (limits.side != Limits::Side::kBelow) lines.push_back({kind, limits.reference + distance});
}

std::vector<LevelLine> LimitLines(const Limits& limits) {
  std::vector<LevelLine> lines = {{LevelLine::Kind::kReference, limits.reference}};
  AddAround(lines, LevelLine::Kind::kTolerance, limits, limits.tolerance);
  AddAround(lines, LevelLine::Kind::kAction, limits, limits.action);
  return lines;
}

}  // namespace

Trend MakeTrend(Series series, const ControlRules& rules, std::optional<Limits> limits) {
  Trend trend;
  trend.series = std::move(series);
  trend.statistics = StatisticsOf(trend.series);
  trend.changes = ChangesAtMarks(trend.series);
  trend.limits = limits;
  std::vector<double> values;
  for (std::size_t i = 0; i < trend.series.points.size(); ++i) {
    if (!trend.series.points[i].value) continue;
    trend.value_points.push_back(i);
    values.push_back(*trend.series.points[i].value);
  }
  trend.control = MakeControlChart(values, rules);
  return trend;
}

std::vector<ControlRule> RulesAt(const Trend& trend, std::size_t point) {
  std::vector<ControlRule> rules;
  if (!trend.control) return rules;
  const auto& points = trend.value_points;
  const auto place = std::lower_bound(points.begin(), points.end(), point);
  if (place == points.end() || *place != point) return rules;
  const auto value = static_cast<std::size_t>(place - points.begin());
  const auto& hits = trend.control->hits;
  const auto before = [](const RuleHit& hit, std::size_t index) { return hit.value < index; };
  for (auto hit = std::lower_bound(hits.begin(), hits.end(), value, before);
       hit != hits.end() && hit->value == value; ++hit) {
    rules.push_back(hit->rule);
  }
  return rules;
}

const SeriesPoint* LastValue(const Trend& trend) {
  return trend.value_points.empty() ? nullptr : &trend.series.points[trend.value_points.back()];
}

std::vector<LevelLine> LevelLinesOf(const Trend& trend) {
  std::vector<LevelLine> lines;
  if (trend.control) lines.push_back({LevelLine::Kind::kMean, trend.control->mean});
  if (trend.control && trend.control->moving_range > 0) {
    lines.push_back({LevelLine::Kind::kControl, trend.control->lower});
    lines.push_back({LevelLine::Kind::kControl, trend.control->upper});
  }
  if (!trend.limits) return lines;
  const std::vector<double> drawn = Drawn(trend);
  if (drawn.empty()) return LimitLines(*trend.limits);
  const auto [low, high] = std::minmax_element(drawn.begin(), drawn.end());
  const double room = *high - *low;
  for (const LevelLine& line : LimitLines(*trend.limits)) {
    const bool near = line.value >= *low - room && line.value <= *high + room;
    if (room == 0 || near) lines.push_back(line);
  }
  return lines;
}

Axis ValueAxisOf(const Trend& trend, int ticks) {
  std::vector<double> values = Drawn(trend);
  for (const LevelLine& line : LevelLinesOf(trend)) values.push_back(line.value);
  return ValueAxis(values, ticks);
}

Axis TimeAxisOf(const std::vector<Trend>& trends, int ticks) {
  LocalTime first = LocalTime::max();
  LocalTime last = LocalTime::min();
  const auto widen = [&](LocalTime when) {
    first = std::min(first, when);
    last = std::max(last, when);
  };
  for (const Trend& trend : trends) {
    for (const SeriesPoint& point : trend.series.points) widen(point.when);
    for (const MaintenanceMark& mark : trend.series.marks) widen(mark.when);
  }
  if (first > last) first = last = LocalTime{};
  return TimeAxis(first, last, ticks);
}

std::string MarkLetter(std::size_t mark) {
  constexpr std::size_t kLetters = 26;
  std::string letters(1, static_cast<char>('A' + mark % kLetters));
  while (mark >= kLetters) {
    mark = mark / kLetters - 1;
    letters.insert(letters.begin(), static_cast<char>('A' + mark % kLetters));
  }
  return letters;
}

std::string MarkText(const MaintenanceMark& mark) {
  std::string text;
  for (const std::string& label : mark.labels) text += (text.empty() ? "" : ", ") + label;
  return text;
}

std::string SignedNumber(double value, int digits) {
  return (value > 0 ? "+" : "") + ShortNumber(value, digits);
}

}  // namespace logbook::insight
