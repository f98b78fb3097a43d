// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendStatistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "SampleTrends.h"

namespace logbook::insight {
namespace {

using test::DailySeries;
using test::MarkAt;

const double kGap = std::nan("");

// NIST Statistical Reference Datasets, linear regression, "Norris": y and x of 36 readings.
constexpr double kNorris[][2] = {
    {0.1, 0.2},     {338.8, 337.4}, {118.1, 118.2}, {888.0, 884.6}, {9.2, 10.1},    {228.1, 226.5},
    {668.5, 666.3}, {998.5, 996.3}, {449.1, 448.6}, {778.9, 777.0}, {559.2, 558.2}, {0.3, 0.4},
    {0.1, 0.6},     {778.1, 775.5}, {668.8, 666.9}, {339.3, 338.0}, {448.9, 447.5}, {10.8, 11.6},
    {557.7, 556.0}, {228.3, 228.1}, {998.0, 995.8}, {888.8, 887.6}, {119.6, 120.2}, {0.3, 0.3},
    {0.6, 0.3},     {557.6, 556.8}, {339.3, 339.1}, {888.0, 887.2}, {998.5, 999.0}, {778.9, 779.0},
    {10.2, 11.1},   {117.6, 118.3}, {228.9, 229.2}, {668.4, 669.1}, {449.2, 448.9}, {0.2, 0.5}};

TEST(TrendStatistics, SlopeAgreesWithTheCertifiedValuesOfNorris) {
  constexpr double kSlope = 1.00211681802045;
  constexpr double kDeviation = 0.429796848199937e-03;
  constexpr double kStudent34 = 2.032244509;  // 5 % on both sides, 34 degrees of freedom
  Series series;
  for (const auto& [y, x] : kNorris) {
    // A tenth of a day is 8640 seconds, so that every x is a whole number of them.
    const auto tenths = std::lround(x * 10);
    series.points.push_back(
        {LocalTime(std::chrono::seconds(tenths * 8640)), y, "", "ok", "26010100"});
  }
  const TrendStatistics statistics = StatisticsOf(series);
  ASSERT_TRUE(statistics.slope);
  EXPECT_NEAR(statistics.slope->per_day, kSlope, 1e-12);
  EXPECT_NEAR(statistics.slope->high - kSlope, kStudent34 * kDeviation, 1e-11);
  EXPECT_NEAR(kSlope - statistics.slope->low, kStudent34 * kDeviation, 1e-11);
}

TEST(TrendStatistics, StudentAgreesWithThePublishedTable) {
  EXPECT_NEAR(StudentT(0.05, 1), 12.7062, 0.00005);
  EXPECT_NEAR(StudentT(0.05, 2), 4.30265, 0.000005);
  EXPECT_NEAR(StudentT(0.05, 10), 2.22814, 0.000005);
  EXPECT_NEAR(StudentT(0.05, 30), 2.04227, 0.000005);
  EXPECT_NEAR(StudentT(0.01, 5), 4.03214, 0.000005);
  EXPECT_NEAR(StudentT(0.05, 1e6), 1.95997, 0.00001);
}

TEST(TrendStatistics, MedianAndSpreadComeFromTheSortedValues) {
  const TrendStatistics four = StatisticsOf(DailySeries({4, 1, 3, 2}));
  EXPECT_DOUBLE_EQ(four.median, 2.5);
  EXPECT_DOUBLE_EQ(four.lower_quartile, 1.75);
  EXPECT_DOUBLE_EQ(four.upper_quartile, 3.25);
  EXPECT_DOUBLE_EQ(four.Spread(), 1.5);
  EXPECT_DOUBLE_EQ(four.minimum, 1);
  EXPECT_DOUBLE_EQ(four.maximum, 4);
  EXPECT_DOUBLE_EQ(four.mean, 2.5);
  EXPECT_NEAR(four.standard_deviation, std::sqrt(5.0 / 3), 1e-15);
  EXPECT_DOUBLE_EQ(StatisticsOf(DailySeries({7, 1, 3})).median, 3);
}

TEST(TrendStatistics, GapsAreCountedAndTakeNoPart) {
  const TrendStatistics statistics = StatisticsOf(DailySeries({1, kGap, 3, kGap}));
  EXPECT_EQ(statistics.values, 2U);
  EXPECT_EQ(statistics.gaps, 2U);
  EXPECT_DOUBLE_EQ(statistics.mean, 2);
}

TEST(TrendStatistics, NoValueGivesZerosAndNoSlope) {
  const TrendStatistics statistics = StatisticsOf(DailySeries({kGap}));
  EXPECT_EQ(statistics.values, 0U);
  EXPECT_EQ(statistics.median, 0);
  EXPECT_FALSE(statistics.slope);
}

TEST(TrendStatistics, ASlopeNeedsThreeValuesAtDifferentMoments) {
  EXPECT_FALSE(StatisticsOf(DailySeries({1, 2})).slope);
  Series together = DailySeries({1, 2, 3});
  for (SeriesPoint& point : together.points) point.when = together.points[0].when;
  EXPECT_FALSE(StatisticsOf(together).slope);
  const auto slope = StatisticsOf(DailySeries({1, 3, 5})).slope;
  ASSERT_TRUE(slope);
  EXPECT_NEAR(slope->per_day, 2, 1e-12);
  EXPECT_NEAR(slope->low, 2, 1e-9);
  EXPECT_NEAR(slope->high, 2, 1e-9);
}

TEST(TrendStatistics, EqualValuesHaveNoSlopeAndNoDeviation) {
  const TrendStatistics statistics = StatisticsOf(DailySeries(std::vector<double>(10, 0.1)));
  EXPECT_EQ(statistics.mean, 0.1);
  EXPECT_EQ(statistics.standard_deviation, 0);
  EXPECT_EQ(statistics.slope->per_day, 0);
}

TEST(TrendStatistics, AMarkSeparatesTheSpanBeforeFromTheSpanThatItBegins) {
  Series series = DailySeries({2, 4, 6, 1, 1, kGap, 5});
  series.marks = {MarkAt("2026-01-04", {"Clean Cones"}), MarkAt("2026-01-07", {"Change Cones"})};
  const std::vector<MarkChange> changes = ChangesAtMarks(series);
  ASSERT_EQ(changes.size(), 2U);
  EXPECT_EQ(changes[0].before, 4);
  EXPECT_EQ(changes[0].after, 1);
  EXPECT_EQ(changes[0].difference, -3);
  EXPECT_EQ(changes[0].percent, -75);
  EXPECT_EQ(changes[1].before, 1);
  EXPECT_EQ(changes[1].after, 5);
  EXPECT_EQ(changes[1].percent, 400);
}

TEST(TrendStatistics, AMarkWithoutValuesOnASideHasNoChange) {
  Series series = DailySeries({0, 0, 5});
  series.marks = {MarkAt("2026-01-01", {"a"}), MarkAt("2026-01-03", {"b"}),
                  MarkAt("2026-01-09", {"c"})};
  const std::vector<MarkChange> changes = ChangesAtMarks(series);
  EXPECT_FALSE(changes[0].before);
  EXPECT_FALSE(changes[0].difference);
  EXPECT_EQ(changes[1].difference, 5);
  EXPECT_FALSE(changes[1].percent) << "there is no share of zero";
  EXPECT_FALSE(changes[2].after);
}

}  // namespace
}  // namespace logbook::insight
