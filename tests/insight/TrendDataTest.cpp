// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendData.h"

#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "SampleTrends.h"

namespace logbook::insight {
namespace {

using nlohmann::json;
using test::DailySeries;
using test::MarkAt;

Trend SmallTrend() {
  Series series = DailySeries({1, std::nan(""), 3, 20});
  series.marks = {MarkAt("2026-01-03", {"Clean Cones", "Change Torch"})};
  series.marks[0].log = series.points[2].log;
  Limits limits;
  limits.reference = 2;
  limits.tolerance = Amount{50, true};
  return MakeTrend(series, ParseControlRules("1").value(), limits);
}

TEST(TrendData, CsvHasALineForEveryValueAndGap) {
  const std::string first = SmallTrend().series.points[0].log;
  const std::string csv = TrendCsv({SmallTrend()});
  EXPECT_TRUE(csv.starts_with("log,date,catalogue,row,label,unit,value,text,state,rules,marks\r\n" +
                              first + ",2026-01-01T12:00:00,tune,63,Oxide,%,1,1.00,ok,,\r\n"))
      << csv;
  EXPECT_NE(csv.find(",2026-01-02T12:00:00,tune,63,Oxide,%,,,na,,\r\n"), std::string::npos);
  EXPECT_NE(csv.find("%,3,3.00,ok,,Clean Cones;Change Torch\r\n"), std::string::npos);
}

TEST(TrendData, JsonTellsAllThatWasReckoned) {
  const json document = json::parse(TrendJson({SmallTrend()}));
  const json& trend = document.at("trends").at(0);
  EXPECT_EQ(trend.at("catalogue"), "tune");
  EXPECT_EQ(trend.at("row"), 63);
  EXPECT_EQ(trend.at("label"), "Oxide");
  EXPECT_EQ(trend.at("unit"), "%");
  EXPECT_EQ(trend.at("statistics").at("values"), 3);
  EXPECT_EQ(trend.at("statistics").at("gaps"), 1);
  EXPECT_EQ(trend.at("statistics").at("median"), 3);
  EXPECT_EQ(trend.at("statistics").at("slope").at("confidence"), 0.95);
  EXPECT_EQ(trend.at("control").at("mean"), 8);
  EXPECT_EQ(trend.at("control").at("moving_range"), 9.5);
  EXPECT_EQ(trend.at("limits").at("reference"), 2);
  EXPECT_EQ(trend.at("limits").at("tolerance"), json({{"number", 50.0}, {"percent", true}}));
  EXPECT_TRUE(trend.at("limits").at("action").is_null());
  EXPECT_EQ(trend.at("limits").at("verdict"), "watch");
  EXPECT_EQ(trend.at("marks").at(0).at("items"), json({"Clean Cones", "Change Torch"}));
  EXPECT_EQ(trend.at("marks").at(0).at("before"), 1);
  EXPECT_EQ(trend.at("values").size(), 4U);
  EXPECT_TRUE(trend.at("values").at(1).at("value").is_null());
  EXPECT_EQ(trend.at("values").at(1).at("state"), "na");
  EXPECT_EQ(trend.at("values").at(3).at("text"), "20.00");
}

TEST(TrendData, NoValueGivesNullsAndNoZeros) {
  const json document = json::parse(TrendJson({MakeTrend(DailySeries({std::nan("")}), {}, {})}));
  const json& trend = document.at("trends").at(0);
  EXPECT_FALSE(trend.at("statistics").contains("median"));
  EXPECT_TRUE(trend.at("control").is_null());
  EXPECT_TRUE(trend.at("limits").is_null());
}

TEST(TrendData, NamesThatAreNoTextStillGiveJson) {
  Series series = DailySeries({1});
  series.points[0].log = "\xFF";
  EXPECT_TRUE(json::accept(TrendJson({MakeTrend(series, {}, {})})));
}

}  // namespace
}  // namespace logbook::insight
