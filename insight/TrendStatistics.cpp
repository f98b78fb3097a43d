// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendStatistics.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace logbook::insight {
namespace {

// The continued fraction of the incomplete beta function, by Lentz's method.
double BetaFraction(double a, double b, double x) {
  constexpr double kTiny = 1e-300;
  constexpr int kMostSteps = 500;
  double c = 1;
  double d = 1 - (a + b) * x / (a + 1);
  d = 1 / (std::abs(d) < kTiny ? kTiny : d);
  double fraction = d;
  const auto step = [&](double numerator) {
    d = 1 + numerator * d;
    d = 1 / (std::abs(d) < kTiny ? kTiny : d);
    c = 1 + numerator / c;
    if (std::abs(c) < kTiny) c = kTiny;
    fraction *= d * c;
    return d * c;
  };
  for (int m = 1; m <= kMostSteps; ++m) {
    const double two_m = 2.0 * m;
    step(m * (b - m) * x / ((a + two_m - 1) * (a + two_m)));
    const double change = step(-(a + m) * (a + b + m) * x / ((a + two_m) * (a + two_m + 1)));
    if (std::abs(change - 1) < std::numeric_limits<double>::epsilon()) break;
  }
  return fraction;
}

// The regularized incomplete beta function.
double IncompleteBeta(double a, double b, double x) {
  if (x <= 0) return 0;
  if (x >= 1) return 1;
  const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                a * std::log(x) + b * std::log1p(-x));
  if (x < (a + 1) / (a + b + 2)) return front * BetaFraction(a, b, x) / a;
  return 1 - front * BetaFraction(b, a, 1 - x) / b;
}

// How often |t| exceeds a bound.
double TwoSidedTail(double t, double degrees) {
  return IncompleteBeta(degrees / 2, 0.5, degrees / (degrees + t * t));
}

struct Sample {
  double day;
  double value;
};

std::vector<Sample> SamplesOf(const Series& series) {
  std::vector<Sample> samples;
  for (const SeriesPoint& point : series.points) {
    if (point.value) samples.push_back({DaysOf(point.when), *point.value});
  }
  return samples;
}

// Sums of differences from the first sample, so that equal values give exactly their value.
template <typename Field>
double MeanOf(const std::vector<Sample>& samples, Field field) {
  const double first = samples.front().*field;
  double sum = 0;
  for (const Sample& sample : samples) sum += sample.*field - first;
  return first + sum / static_cast<double>(samples.size());
}

struct Sums {
  double xx = 0, xy = 0, yy = 0;
};

Sums SumsAround(const std::vector<Sample>& samples, double day, double value) {
  Sums sums;
  for (const Sample& sample : samples) {
    sums.xx += (sample.day - day) * (sample.day - day);
    sums.xy += (sample.day - day) * (sample.value - value);
    sums.yy += (sample.value - value) * (sample.value - value);
  }
  return sums;
}

std::optional<Slope> SlopeOf(const std::vector<Sample>& samples, double mean, const Sums& sums) {
  constexpr double kOutside = 0.05;
  if (samples.size() < 3 || sums.xx == 0) return std::nullopt;
  const double slope = sums.xy / sums.xx;
  const double middle = MeanOf(samples, &Sample::day);
  double residual = 0;
  for (const Sample& sample : samples) {
    const double off = sample.value - mean - slope * (sample.day - middle);
    residual += off * off;
  }
  const double degrees = static_cast<double>(samples.size()) - 2;
  const double half = StudentT(kOutside, degrees) * std::sqrt(residual / degrees / sums.xx);
  return Slope{slope, slope - half, slope + half};
}

// The median of the values in [from, to).
std::optional<double> MedianBetween(const Series& series, LocalTime from, LocalTime to) {
  const auto earlier = [](const SeriesPoint& point, LocalTime when) { return point.when < when; };
  const auto begin = series.points.begin();
  const auto first = std::lower_bound(begin, series.points.end(), from, earlier);
  const auto last = std::lower_bound(first, series.points.end(), to, earlier);
  std::vector<double> values;
  for (auto point = first; point != last; ++point) {
    if (point->value) values.push_back(*point->value);
  }
  if (values.empty()) return std::nullopt;
  std::sort(values.begin(), values.end());
  return Quantile(values, 0.5);
}

}  // namespace

double Quantile(std::span<const double> sorted, double share) {
  if (sorted.empty()) return 0;
  const double place = share * static_cast<double>(sorted.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  if (below + 1 >= sorted.size()) return sorted.back();
  return sorted[below] + (place - static_cast<double>(below)) * (sorted[below + 1] - sorted[below]);
}

double StudentT(double two_sided_probability, double degrees) {
  double low = 0;
  double high = 1;
  while (TwoSidedTail(high, degrees) > two_sided_probability) high *= 2;
  constexpr int kHalvings = 200;
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = low + (high - low) / 2;
    if (middle == low || middle == high) break;
    (TwoSidedTail(middle, degrees) > two_sided_probability ? low : high) = middle;
  }
  return high;
}

TrendStatistics StatisticsOf(const Series& series) {
  const std::vector<Sample> samples = SamplesOf(series);
  TrendStatistics result;
  result.values = samples.size();
  result.gaps = series.points.size() - samples.size();
  if (samples.empty()) return result;
  std::vector<double> sorted;
  sorted.reserve(samples.size());
  for (const Sample& sample : samples) sorted.push_back(sample.value);
  std::sort(sorted.begin(), sorted.end());
  result.minimum = sorted.front();
  result.maximum = sorted.back();
  result.median = Quantile(sorted, 0.5);
  result.lower_quartile = Quantile(sorted, 0.25);
  result.upper_quartile = Quantile(sorted, 0.75);
  result.mean = MeanOf(samples, &Sample::value);
  const Sums sums = SumsAround(samples, MeanOf(samples, &Sample::day), result.mean);
  if (samples.size() > 1) {
    result.standard_deviation = std::sqrt(sums.yy / static_cast<double>(samples.size() - 1));
  }
  result.slope = SlopeOf(samples, result.mean, sums);
  return result;
}

std::vector<MarkChange> ChangesAtMarks(const Series& series) {
  std::vector<MarkChange> changes;
  for (std::size_t i = 0; i < series.marks.size(); ++i) {
    const LocalTime here = series.marks[i].when;
    const LocalTime from = i == 0 ? LocalTime::min() : series.marks[i - 1].when;
    const LocalTime to = i + 1 < series.marks.size() ? series.marks[i + 1].when : LocalTime::max();
    MarkChange change{
        i, MedianBetween(series, from, here), MedianBetween(series, here, to), {}, {}};
    if (change.before && change.after) {
      change.difference = *change.after - *change.before;
      if (*change.before != 0) change.percent = *change.difference / std::abs(*change.before) * 100;
    }
    changes.push_back(change);
  }
  return changes;
}

}  // namespace logbook::insight
