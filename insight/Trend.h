// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A series with all that is reckoned from it: what the command "trend" tells of a row, in whatever
// form. The forms are in TrendTerminal.h, TrendSvg.h, TrendHtml.h and TrendData.h. Pure.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "insight/Axis.h"
#include "insight/ControlChart.h"
#include "insight/Limits.h"
#include "insight/Series.h"
#include "insight/TrendStatistics.h"

namespace logbook::insight {

struct Trend {
  Series series;
  TrendStatistics statistics;
  std::vector<MarkChange> changes;        // one a mark
  std::optional<ControlChart> control;    // nothing for fewer than two values
  std::vector<std::size_t> value_points;  // the points that the control chart counts, by its values
  std::optional<Limits> limits;
};

Trend MakeTrend(Series series, const ControlRules& rules, std::optional<Limits> limits);

// The rules that a point fulfils; empty for most, and for gaps.
std::vector<ControlRule> RulesAt(const Trend& trend, std::size_t point);

// The last point with a value; nothing if there is none.
const SeriesPoint* LastValue(const Trend& trend);

// A horizontal line of the drawing.
struct LevelLine {
  enum class Kind { kMean, kControl, kReference, kTolerance, kAction };
  Kind kind = Kind::kMean;
  double value = 0;
  bool operator==(const LevelLine&) const = default;
};

// The lines of control chart and limits. Lines of limits that lie so far off that they would
// flatten the curve are left out: farther from the values and control limits than these are apart.
// Control limits without any distance are left out too.
std::vector<LevelLine> LevelLinesOf(const Trend& trend);

// The axes that hold all values, marks and lines.
Axis ValueAxisOf(const Trend& trend, int ticks);
Axis TimeAxisOf(const std::vector<Trend>& trends, int ticks);

// The letter of a mark in drawings and lists: A to Z, then AA, AB and so on.
std::string MarkLetter(std::size_t mark);

// The labels of a mark with ", " between them.
std::string MarkText(const MaintenanceMark& mark);

// A number with its sign: "+0.5", "-2", "0".
std::string SignedNumber(double value, int digits = kShortDigits);

}  // namespace logbook::insight
