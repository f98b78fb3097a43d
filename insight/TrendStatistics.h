// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Figures of a series: its middle, its spread, how fast it drifts and what each maintenance
// changed. Gaps take no part. Pure reckoning; none raises anything.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "insight/Series.h"

namespace logbook::insight {

// The slope of the straight line of least squares with the interval that holds the true one in 95
// of 100 cases (Student's t).
struct Slope {
  double per_day = 0;
  double low = 0;
  double high = 0;
};

struct TrendStatistics {
  std::size_t values = 0;
  std::size_t gaps = 0;
  // All below are 0 if there is no value.
  double minimum = 0;
  double maximum = 0;
  double mean = 0;
  double median = 0;
  double lower_quartile = 0;  // quartiles by linear interpolation between neighbours
  double upper_quartile = 0;
  double standard_deviation = 0;  // of a sample: n - 1; 0 for a single value
  // From three values on, unless all are of one moment.
  std::optional<Slope> slope;

  // The middle half of the values lies within this width.
  double Spread() const { return upper_quartile - lower_quartile; }
};

TrendStatistics StatisticsOf(const Series& series);

// What changed at a maintenance mark. The span before a mark begins at the mark before it, the span
// behind it ends at the next one; the log of the mark itself belongs to the span behind it, since
// its snapshot was taken when the work was done.
struct MarkChange {
  std::size_t mark = 0;              // index in Series::marks
  std::optional<double> before;      // median of the span before
  std::optional<double> after;       // median of the span behind
  std::optional<double> difference;  // after - before
  std::optional<double> percent;     // of the magnitude of before; nothing where that is 0
};

// One for each mark, in their order.
std::vector<MarkChange> ChangesAtMarks(const Series& series);

// The value that a share of the values (0 to 1) does not exceed, by linear interpolation between
// neighbours; 0 for no values. The values must be in ascending order.
double Quantile(std::span<const double> sorted, double share);

// The point that a variable of Student's t distribution with so many degrees of freedom (1 or more)
// exceeds in magnitude with this probability (more than 0, less than 1).
double StudentT(double two_sided_probability, double degrees);

}  // namespace logbook::insight
