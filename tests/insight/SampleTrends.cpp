// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "SampleTrends.h"

#include <cmath>
#include <string>

namespace logbook::test {

using insight::LocalTime;
using insight::MaintenanceMark;
using insight::Series;

namespace {

std::string Printed(double value) {
  std::string text = std::to_string(value);
  return text.substr(0, text.size() - 4);  // two of six decimals
}

insight::SeriesPoint PointAt(LocalTime when, double value) {
  insight::SeriesPoint point;
  point.when = when;
  point.log = "2601" + std::to_string(insight::DayOf(when).time_since_epoch().count());
  point.state = std::isnan(value) ? "na" : "ok";
  if (!std::isnan(value)) {
    point.value = value;
    point.text = Printed(value);
  }
  return point;
}

Series RowSeries(int row, const std::string& label, const std::string& unit) {
  Series series;
  series.catalogue = "tune";
  series.row = row;
  series.label = label;
  series.unit = unit;
  series.section = "Sensitivity & <more>";
  series.format = "0.00";
  return series;
}

}  // namespace

LocalTime Noon(std::string_view day) {
  return insight::ParseDay(day).value() + std::chrono::hours(12);
}

Series DailySeries(const std::vector<double>& values) {
  Series series = RowSeries(63, "Oxide", "%");
  LocalTime when = Noon("2026-01-01");
  for (const double value : values) {
    series.points.push_back(PointAt(when, value));
    when += std::chrono::days(1);
  }
  return series;
}

MaintenanceMark MarkAt(std::string_view day, std::vector<std::string> labels) {
  return {Noon(day), std::move(labels), "26010100"};
}

std::vector<insight::Trend> OxideAndGas() {
  Series oxide = RowSeries(63, "Oxide", "%");
  Series gas = RowSeries(109, "Carrier Gas", "L/min");
  for (int i = 0; i < 40; ++i) {
    const LocalTime when = Noon("2026-01-04") + std::chrono::days(9 * i);
    // A small triangle wave on a ramp that falls back at the 15th and the 29th log.
    const double wear = 0.03 * (i < 15 ? i : (i < 29 ? i - 15 : i - 29));
    const double value = 1.05 + wear + 0.04 * (i % 3 - 1) + (i == 22 ? 0.7 : 0);
    oxide.points.push_back(PointAt(when, i == 8 || i == 31 ? std::nan("") : value));
    gas.points.push_back(PointAt(when, 1.05));
  }
  oxide.marks = {MarkAt("2026-05-19", {"Clean Cones"}),
                 MarkAt("2026-05-28", {"Change Torch", "Clean Nebulizer"}),
                 MarkAt("2026-09-22", {"Clean Cones", "Change Cones"}),
                 MarkAt("2026-12-21", {"Replace Peripump Tube"})};
  gas.marks = oxide.marks;
  insight::Limits limits;
  limits.reference = 1.2;
  limits.tolerance = insight::Amount{20, true};
  limits.action = insight::Amount{0.45, false};
  limits.side = insight::Limits::Side::kAbove;
  const insight::ControlRules rules = insight::ParseControlRules("1,2").value();
  return {insight::MakeTrend(oxide, rules, limits), insight::MakeTrend(gas, rules, {})};
}

}  // namespace logbook::test
