// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Axis.h"

#include <gtest/gtest.h>

#include <limits>

#include "SampleTrends.h"

namespace logbook::insight {
namespace {

using test::Noon;

std::vector<std::string> Labels(const Axis& axis) {
  std::vector<std::string> labels;
  for (const Tick& tick : axis.ticks) labels.push_back(tick.label);
  return labels;
}

using Texts = std::vector<std::string>;

TEST(Axis, ValuesHaveTicksAtRoundNumbersWithTheOuterTwoAtTheEnds) {
  const Axis axis = ValueAxis(std::vector<double>{0.93, 1.87}, 5);
  EXPECT_EQ(Labels(axis), (Texts{"0.8", "1", "1.2", "1.4", "1.6", "1.8", "2"}));
  EXPECT_DOUBLE_EQ(axis.low, 0.8);
  EXPECT_DOUBLE_EQ(axis.high, 2);
  EXPECT_EQ(Labels(ValueAxis(std::vector<double>{-1500, 2500}, 4)),
            (Texts{"-2000", "-1000", "0", "1000", "2000", "3000"}));
}

TEST(Axis, RoundValuesNeedNoRoomBeyondThem) {
  EXPECT_EQ(Labels(ValueAxis(std::vector<double>{0, 10}, 5)),
            (Texts{"0", "2", "4", "6", "8", "10"}));
}

TEST(Axis, EqualValuesAndNoValuesHaveRoom) {
  const Axis equal = ValueAxis(std::vector<double>{5, 5}, 4);
  EXPECT_LT(equal.low, 5);
  EXPECT_GT(equal.high, 5);
  const Axis zero = ValueAxis(std::vector<double>{0}, 4);
  EXPECT_LT(zero.low, 0);
  EXPECT_GT(zero.high, 0);
  EXPECT_EQ(ValueAxis({}, 2).low, 0);
  EXPECT_EQ(ValueAxis({}, 2).high, 1);
}

TEST(Axis, NumbersOfAnyMagnitudeHaveAFewTicks) {
  const double most = std::numeric_limits<double>::max();
  for (const double value : {1e-300, 3e-5, 123456789.0, 1e300, most}) {
    const Axis axis = ValueAxis(std::vector<double>{-value, value}, 5);
    EXPECT_LE(axis.ticks.size(), 12U) << value;
    EXPECT_GE(axis.ticks.size(), 3U) << value;
    EXPECT_LE(axis.low, -value / 2) << value;
  }
}

TEST(Axis, NumbersTooSmallToBeDividedHaveRoomLikeZero) {
  const Axis axis = ValueAxis(std::vector<double>{0, 5e-324}, 5);
  EXPECT_LE(axis.low, -1);
  EXPECT_GE(axis.high, 1);
  EXPECT_GE(axis.ticks.size(), 3u);
}

TEST(Axis, DaysHaveTicksAtRoundDates) {
  EXPECT_EQ(Labels(TimeAxis(Noon("2026-01-20"), Noon("2026-12-20"), 6)),
            (Texts{"2026-03", "2026-05", "2026-07", "2026-09", "2026-11"}));
  EXPECT_EQ(Labels(TimeAxis(Noon("2026-03-02"), Noon("2026-03-24"), 5)),
            (Texts{"2026-03-09", "2026-03-16", "2026-03-23"}));
  EXPECT_EQ(Labels(TimeAxis(Noon("2001-03-01"), Noon("2031-03-01"), 7)),
            (Texts{"2005", "2010", "2015", "2020", "2025", "2030"}));
  EXPECT_EQ(Labels(TimeAxis(Noon("2026-03-02"), Noon("2026-03-02") + std::chrono::hours(20), 5)),
            (Texts{"03-02 12:00", "03-02 18:00", "03-03 00:00", "03-03 06:00"}));
}

TEST(Axis, OneMomentHasADay) {
  const Axis axis = TimeAxis(Noon("2026-03-02"), Noon("2026-03-02"), 5);
  EXPECT_DOUBLE_EQ(axis.high - axis.low, 1);
  EXPECT_DOUBLE_EQ(axis.Share(DaysOf(Noon("2026-03-02"))), 0.5);
}

TEST(Axis, TheWholeCalendarHasTicksToo) {
  const Axis axis = TimeAxis(Noon("0001-01-01"), Noon("9999-12-31"), 6);
  EXPECT_FALSE(axis.ticks.empty());
  EXPECT_LE(axis.ticks.size(), 6U);
}

TEST(Axis, ShortNumbersHaveSixDigitsAtMost) {
  EXPECT_EQ(ShortNumber(1.5), "1.5");
  EXPECT_EQ(ShortNumber(-0.0), "0");
  EXPECT_EQ(ShortNumber(0.1 + 0.2), "0.3");
  EXPECT_EQ(ShortNumber(1234567), "1.23457e+06");
}

}  // namespace
}  // namespace logbook::insight
