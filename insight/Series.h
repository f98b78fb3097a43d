// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One catalogue row over time: what trends, control charts and their drawings are made from.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "insight/LocalDate.h"

namespace logbook::insight {

// The value of one log. Without a number the point is a gap.
struct SeriesPoint {
  LocalTime when{};
  std::optional<double> value;
  std::string text;   // as list and reports print it; empty without a value
  std::string state;  // "ok", or why there is no number: "na", "missing", "short", "none"
  std::string log;    // folder name
};

// Maintenance that the record of this moment speaks of.
struct MaintenanceMark {
  LocalTime when{};
  std::vector<std::string> labels;  // tick labels, such as "Clean Cones"; never empty
  std::string log;
};

struct Series {
  std::string catalogue;  // "tune", "meter", "analog", "sys", "bout", "bin"
  int row = 0;            // from 0
  std::string label;
  std::string unit;                    // empty for a value without one
  std::string section;                 // heading of the report section
  std::string source;                  // the log root where there are several, else empty
  std::string format;                  // number picture (text/NumberFormat.h)
  std::vector<SeriesPoint> points;     // ascending by time
  std::vector<MaintenanceMark> marks;  // ascending by time
};

// The local moment as days since 1970-01-01 00:00, with fraction: the abscissa of all reckoning and
// drawing. Days are those of the wall clock, so a change to summer time moves nothing.
double DaysOf(LocalTime when);

// The label with its unit as the list heads its columns: "Oxide (%)", and
// with its source where it names one.
std::string TitleOf(const Series& series);

}  // namespace logbook::insight
