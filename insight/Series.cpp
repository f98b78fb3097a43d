// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Series.h"

namespace logbook::insight {

double DaysOf(LocalTime when) {
  return static_cast<double>(when.time_since_epoch().count()) / 86400.0;
}

std::string TitleOf(const Series& series) {
  std::string title = series.label;
  if (!series.unit.empty()) title += " (" + series.unit + ")";
  if (!series.source.empty()) title += " - " + series.source;
  return title;
}

}  // namespace logbook::insight
