// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ControlChart.h"

#include <gtest/gtest.h>

#include <vector>

namespace logbook::insight {
namespace {

ControlRules Only(ControlRule rule) {
  return {rule};
}

// Values in sigmas around a mean of 0: two far values at the beginning and the end, which cancel
// out, stretch the moving ranges so that they do not matter; the chart's own sigma is asked for.
std::vector<std::size_t> HitsOf(const std::vector<double>& values, ControlRule rule) {
  std::vector<std::size_t> hits;
  const std::optional<ControlChart> chart = MakeControlChart(values, Only(rule));
  for (const RuleHit& hit : chart.value().hits) {
    EXPECT_EQ(hit.rule, rule);
    hits.push_back(hit.value);
  }
  return hits;
}

using Places = std::vector<std::size_t>;

// NIST/SEMATECH e-Handbook of Statistical Methods, section 6.3.2.2 "Individuals Control Charts":
// flow rates of ten batches. The handbook divides by d2 = 1.128 where the chart multiplies by 2.66,
// which is 3 / 1.128 to three places.
TEST(ControlChart, AgreesWithTheWorkedExampleOfTheNistHandbook) {
  const std::vector<double> flow = {49.6, 47.6, 49.9, 51.3, 47.8, 51.2, 52.6, 52.4, 53.6, 52.1};
  const auto chart = MakeControlChart(flow, ParseControlRules("nelson").value());
  ASSERT_TRUE(chart);
  EXPECT_NEAR(chart->mean, 50.81, 1e-9);
  EXPECT_NEAR(chart->moving_range, 1.8778, 0.00005);
  EXPECT_NEAR(chart->upper, 55.8041, 0.001);
  EXPECT_NEAR(chart->lower, 45.8159, 0.001);
  EXPECT_TRUE(chart->hits.empty());
}

TEST(ControlChart, LimitsLieTwoPointSixSixMovingRangesFromTheMean) {
  const auto chart = MakeControlChart(std::vector<double>{10, 12, 11, 13}, {});
  ASSERT_TRUE(chart);
  EXPECT_DOUBLE_EQ(chart->mean, 11.5);
  EXPECT_DOUBLE_EQ(chart->moving_range, 5.0 / 3);
  EXPECT_DOUBLE_EQ(chart->upper, 11.5 + 2.66 * 5 / 3);
  EXPECT_DOUBLE_EQ(chart->lower, 11.5 - 2.66 * 5 / 3);
}

TEST(ControlChart, FewerThanTwoValuesHaveNoChart) {
  EXPECT_FALSE(MakeControlChart(std::vector<double>{}, {}));
  EXPECT_FALSE(MakeControlChart(std::vector<double>{1}, {}));
  EXPECT_TRUE(MakeControlChart(std::vector<double>{1, 2}, {}));
}

TEST(ControlChart, EqualValuesHaveNothingUnusual) {
  const auto chart =
      MakeControlChart(std::vector<double>(40, 0.1), ParseControlRules("1-9").value());
  ASSERT_TRUE(chart);
  EXPECT_EQ(chart->mean, 0.1);
  EXPECT_EQ(chart->upper, 0.1);
  EXPECT_TRUE(chart->hits.empty());
}

TEST(ControlChart, AValueBeyondALimitFulfilsTheFirstRule) {
  const std::vector<double> values = {0, 1, 0, 1, 0, 1, 0, 1, 0, 20, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1};
  EXPECT_EQ(HitsOf(values, ControlRule::kBeyondLimits), Places{9});
}

TEST(ControlChart, NineInARowOnOneSideFulfilTheSecondRuleAndEightDoNot) {
  std::vector<double> values = {-9, 9, -9, 1, 2, 1, 2, 1, 2, 1, 2};
  values.push_back(-9);
  values.push_back(6);
  EXPECT_EQ(HitsOf(values, ControlRule::kNineOnOneSide), Places{});
  EXPECT_EQ(HitsOf(values, ControlRule::kEightOnOneSide), Places{10});
  values[11] = 1;
  values.push_back(-10);
  EXPECT_EQ(HitsOf(values, ControlRule::kNineOnOneSide), (Places{11, 12}));
}

TEST(ControlChart, SixInARowOneWayFulfilTheThirdRule) {
  EXPECT_EQ(HitsOf({3, 1, 2, 3, 4, 5, 4}, ControlRule::kSixOneWay), Places{});
  EXPECT_EQ(HitsOf({3, 1, 2, 3, 4, 5, 6}, ControlRule::kSixOneWay), Places{6});
  EXPECT_EQ(HitsOf({1, 6, 5, 4, 3, 2, 1}, ControlRule::kSixOneWay), Places{6});
  EXPECT_EQ(HitsOf({1, 2, 3, 3, 4, 5, 6}, ControlRule::kSixOneWay), Places{});
}

TEST(ControlChart, FourteenToAndFroFulfilTheFourthRule) {
  std::vector<double> values;
  for (int i = 0; i < 13; ++i) values.push_back(i % 2);
  EXPECT_EQ(HitsOf(values, ControlRule::kFourteenToAndFro), Places{});
  values.push_back(1);
  EXPECT_EQ(HitsOf(values, ControlRule::kFourteenToAndFro), Places{13});
  values[6] = values[5];
  EXPECT_EQ(HitsOf(values, ControlRule::kFourteenToAndFro), Places{});
}

// Mean 0, mean moving range about 1 for all of these.
std::vector<double> Quiet() {
  std::vector<double> values;
  for (int i = 0; i < 60; ++i) values.push_back(i % 2 == 0 ? 0.5 : -0.5);
  return values;
}

TEST(ControlChart, TwoOfThreeBeyondTwoSigmaOnOneSideFulfilTheFifthRule) {
  std::vector<double> values = Quiet();
  values[20] = 2.6;
  values[40] = -2.6;
  EXPECT_EQ(HitsOf(values, ControlRule::kTwoOfThree), Places{});
  values[22] = 2.6;
  values[42] = -2.6;
  EXPECT_EQ(HitsOf(values, ControlRule::kTwoOfThree), (Places{22, 42}));
  values[22] = -2.6;
  values[42] = 2.6;
  EXPECT_EQ(HitsOf(values, ControlRule::kTwoOfThree), Places{});
}

TEST(ControlChart, FourOfFiveBeyondOneSigmaOnOneSideFulfilTheSixthRule) {
  std::vector<double> values = Quiet();
  for (const std::size_t i : {20, 21, 23}) values[i] = 1.6;
  for (const std::size_t i : {40, 41, 43}) values[i] = -1.6;
  EXPECT_EQ(HitsOf(values, ControlRule::kFourOfFive), Places{});
  values[24] = 1.6;
  values[44] = -1.6;
  EXPECT_EQ(HitsOf(values, ControlRule::kFourOfFive), (Places{24, 44}));
}

TEST(ControlChart, FifteenWithinOneSigmaFulfilTheSeventhRule) {
  std::vector<double> values;
  for (int i = 0; i < 8; ++i) values.insert(values.end(), {4, -4});
  const std::size_t quiet = values.size();
  for (int i = 0; i < 15; ++i) values.push_back(i % 2 == 0 ? 0.1 : -0.1);
  EXPECT_EQ(HitsOf(values, ControlRule::kFifteenInside), Places{quiet + 14});
  values.pop_back();
  EXPECT_EQ(HitsOf(values, ControlRule::kFifteenInside), Places{});
}

TEST(ControlChart, EightBeyondOneSigmaOnEitherSideFulfilTheEighthRule) {
  std::vector<double> values = Quiet();
  for (std::size_t i = 20; i < 27; ++i) values[i] = i < 24 ? 2 : -2;
  EXPECT_EQ(HitsOf(values, ControlRule::kEightOutside), Places{});
  values[27] = -2;
  EXPECT_EQ(HitsOf(values, ControlRule::kEightOutside), Places{27});
}

TEST(ControlChart, HitsComeByValueAndThenByRule) {
  std::vector<double> values = Quiet();
  values[20] = 9;
  values[22] = 9;
  const auto chart = MakeControlChart(values, ParseControlRules("5,1").value());
  EXPECT_EQ(chart.value().hits, (std::vector<RuleHit>{{ControlRule::kBeyondLimits, 20},
                                                      {ControlRule::kBeyondLimits, 22},
                                                      {ControlRule::kTwoOfThree, 22}}));
}

TEST(ControlChart, RulesAreNamedByNumbersRangesAndSets) {
  EXPECT_EQ(ParseControlRules("1").value(), Only(ControlRule::kBeyondLimits));
  EXPECT_EQ(ParseControlRules("3,1-2").value(),
            (ControlRules{ControlRule::kBeyondLimits, ControlRule::kNineOnOneSide,
                          ControlRule::kSixOneWay}));
  EXPECT_EQ(ParseControlRules("nelson").value().size(), 8U);
  EXPECT_EQ(ParseControlRules("western").value(),
            (ControlRules{ControlRule::kBeyondLimits, ControlRule::kTwoOfThree,
                          ControlRule::kFourOfFive, ControlRule::kEightOnOneSide}));
}

TEST(ControlChart, OtherTextsNameNoRules) {
  for (const char* text : {"", "0", "10", "1,", ",1", "3-1", "1-", "x", "1 2", "Nelson", "1-9x"}) {
    EXPECT_FALSE(ParseControlRules(text)) << text;
  }
}

TEST(ControlChart, EveryRuleHasItsWords) {
  const ControlRules rules = ParseControlRules("1-9").value();
  for (const ControlRule rule : rules) EXPECT_NE(RuleText(rule), "");
  EXPECT_EQ(RuleText(ControlRule::kEightOnOneSide), "eight in a row on one side of the mean");
}

}  // namespace
}  // namespace logbook::insight
