// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Difference.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "GoldenText.h"
#include "SampleReadings.h"
#include "insight/DifferenceText.h"

namespace logbook::insight {
namespace {

using nlohmann::json;
using test::AllCatalogues;
using test::QuietReading;
using test::RandomLogs;
using test::SetNumber;
using test::SetState;

constexpr RowId kCarrierGas = {Catalogue::kMeter, 4};
constexpr RowId kWaterTemp = {Catalogue::kMeter, 19};
constexpr RowId kOxide = {Catalogue::kTune, 63};
constexpr RowId kOxideMass = {Catalogue::kTune, 62};
constexpr RowId kExtract = {Catalogue::kAnalog, 71};
constexpr RowId kFirstBit = {Catalogue::kBitIn, 0};

LogReading Old() {
  LogReading reading = QuietReading("26010100", "01/01/2026 08:00:00");
  SetNumber(reading, kCarrierGas, 1.05);
  SetNumber(reading, kOxide, 1.2);
  return reading;
}

LogReading New() {
  LogReading reading = Old();
  reading.Identity = {"/srv/logs", "26020100", "02/01/2026 08:00:00", 2};
  return reading;
}

LogDifference Compared(const LogReading& left, const LogReading& right, Amount tolerance = {}) {
  return CompareLogs(AllCatalogues(), left, right, {tolerance, {}});
}

TEST(Difference, EqualLogsHaveNoneWhateverTheirDatesTicksAndComments) {
  LogReading other = New();
  other.Ticks[1] = true;
  other.Comment = "other";
  other.Automatic = true;
  const LogDifference difference = Compared(Old(), other);
  EXPECT_FALSE(difference.Different());
  EXPECT_EQ(difference.right.ticks, std::vector<std::string>{"Clean Cones"});
  EXPECT_EQ(difference.right.comment, "other");
}

TEST(Difference, ANumberDiffersByMoreThanTheTolerance) {
  LogReading other = New();
  SetNumber(other, kCarrierGas, 1.155);
  ASSERT_EQ(Compared(Old(), other).values.size(), 1U);
  const ChangedRow row = Compared(Old(), other).values.at(0);
  EXPECT_EQ(row.id, kCarrierGas);
  EXPECT_NEAR(row.difference.value(), 0.105, 1e-12);
  EXPECT_NEAR(row.percent.value(), 10, 1e-9);
  EXPECT_FALSE(Compared(Old(), other, {0.105, false}).Different());
  EXPECT_TRUE(Compared(Old(), other, {0.1049, false}).Different());
  EXPECT_FALSE(Compared(Old(), other, {9.1, true}).Different()) << "of the greater one";
  EXPECT_TRUE(Compared(Old(), other, {9, true}).Different());
}

TEST(Difference, ARowMayHaveATolerancOfItsOwn) {
  LogReading other = New();
  SetNumber(other, kCarrierGas, 2);
  SetNumber(other, kOxide, 2);
  const Tolerances tolerances = {{0.1, false}, {{PlaceOf(kCarrierGas), {1, false}}}};
  const LogDifference difference = CompareLogs(AllCatalogues(), Old(), other, tolerances);
  ASSERT_EQ(difference.values.size(), 1U);
  EXPECT_EQ(difference.values.at(0).id, kOxide);
}

TEST(Difference, ARowThatNoLongerAppliesIsAChangeOfConfiguration) {
  LogReading other = New();
  SetState(other, kExtract, ValueState::kNotApplicable);
  const LogDifference difference = Compared(Old(), other);
  ASSERT_EQ(difference.applicability.size(), 1U);
  EXPECT_EQ(difference.applicability.at(0).id, kExtract);
  EXPECT_TRUE(difference.values.empty());
  EXPECT_FALSE(difference.applicability.at(0).difference);
}

TEST(Difference, OptionsAreChangesOfConfigurationToo) {
  LogReading other = New();
  other.Options.LENS = 1;
  other.Options.COLOPGS = 2;
  const LogDifference difference = Compared(Old(), other);
  ASSERT_EQ(difference.options.size(), 2U);
  EXPECT_EQ(difference.options.at(0).key, "LENS");
  EXPECT_EQ(difference.options.at(0).right, 1);
  EXPECT_EQ(difference.options.at(1).key, "COLOPGS");
}

TEST(Difference, AZeroAndAMissingValueAreDifferent) {
  LogReading other = New();
  SetNumber(other, kWaterTemp, 0);
  EXPECT_FALSE(Compared(Old(), other).Different());
  SetState(other, kWaterTemp, ValueState::kFileShort);
  EXPECT_EQ(Compared(Old(), other, {1000, false}).values.size(), 1U);
}

TEST(Difference, AMissingFileIsToldOnce) {
  LogReading other = New();
  for (int row = 0; row < kMeterRowCount; ++row) {
    SetState(other, {Catalogue::kMeter, row}, ValueState::kFileMissing);
  }
  const LogDifference difference = Compared(Old(), other);
  ASSERT_EQ(difference.missing.size(), 1U);
  EXPECT_EQ(difference.missing.at(0).which, Catalogue::kMeter);
  EXPECT_EQ(difference.missing.at(0).side, Side::kRight);
  EXPECT_TRUE(difference.values.empty());
  EXPECT_EQ(Compared(other, Old()).missing.at(0).side, Side::kLeft);
  EXPECT_FALSE(Compared(other, other).Different());
}

TEST(Difference, TextsAndBitsDifferWhateverTheTolerance) {
  LogReading other = New();
  other.Values[static_cast<std::size_t>(PlaceOf(kOxideMass))].Text = "156/140";
  SetNumber(other, kFirstBit, 1);
  const LogDifference difference = Compared(Old(), other, {50, true});
  ASSERT_EQ(difference.values.size(), 2U);
  EXPECT_FALSE(difference.values.at(0).difference);
  EXPECT_FALSE(difference.values.at(1).percent);
}

TEST(Difference, ALogIsEqualToItself) {
  RandomLogs logs(21);
  for (const LogReading& reading : test::RandomReadings(logs, 30)) {
    EXPECT_FALSE(Compared(reading, reading).Different()) << reading.Identity.Folder;
  }
}

TEST(Difference, TheOtherWayRoundTheSameRowsDifferWithTheOtherSign) {
  RandomLogs logs(22);
  const std::vector<LogReading> readings = test::RandomReadings(logs, 24);
  const auto ids = [](const std::vector<ChangedRow>& rows) {
    std::vector<RowId> all;
    for (const ChangedRow& row : rows) all.push_back(row.id);
    return all;
  };
  for (std::size_t i = 1; i < readings.size(); ++i) {
    for (const Amount& tolerance : {Amount{}, Amount{5, true}, Amount{0.5, false}}) {
      const LogDifference there = Compared(readings[i - 1], readings[i], tolerance);
      const LogDifference back = Compared(readings[i], readings[i - 1], tolerance);
      EXPECT_EQ(there.options.size(), back.options.size());
      EXPECT_EQ(ids(there.applicability), ids(back.applicability));
      EXPECT_EQ(there.missing.size(), back.missing.size());
      ASSERT_EQ(ids(there.values), ids(back.values));
      for (std::size_t row = 0; row < there.values.size(); ++row) {
        EXPECT_EQ(there.values[row].left, back.values[row].right);
        EXPECT_EQ(there.values[row].difference.value_or(0),
                  -back.values[row].difference.value_or(0));
      }
    }
  }
}

TEST(Difference, EveryRowThatIsNotToldIsEqual) {
  RandomLogs logs(23);
  const std::vector<LogReading> readings = test::RandomReadings(logs, 10);
  for (std::size_t i = 1; i < readings.size(); ++i) {
    const LogDifference difference = Compared(readings[i - 1], readings[i]);
    std::vector<bool> told(kAllRows, false);
    for (const auto* rows : {&difference.values, &difference.applicability}) {
      for (const ChangedRow& row : *rows) told[static_cast<std::size_t>(PlaceOf(row.id))] = true;
    }
    for (int place = 0; place < kAllRows; ++place) {
      const auto index = static_cast<std::size_t>(place);
      const RowValue& left = readings[i - 1].Values[index];
      const RowValue& right = readings[i].Values[index];
      const bool missing =
          left.State == ValueState::kFileMissing || right.State == ValueState::kFileMissing;
      if (!told[index] && !missing) {
        EXPECT_EQ(left, right) << NameOf(RowAtPlace(place));
      }
    }
  }
}

// A pair of logs with a change of each kind.
LogDifference Sample() {
  LogReading left = Old();
  left.Comment = "all well\nsecond line";
  LogReading right = New();
  right.Ticks[1] = right.Ticks[9] = true;
  right.Automatic = true;
  right.Comment = "<b>Oxide</b> & more";
  right.Options.OPGS = 1;
  SetState(right, {Catalogue::kMeter, 6}, ValueState::kNotApplicable);
  SetNumber(right, kCarrierGas, 1.07);
  SetNumber(right, kWaterTemp, 21);
  SetNumber(right, kOxide, 1.2000001);
  SetNumber(right, {Catalogue::kMeter, 7}, 15);
  SetNumber(right, kFirstBit, 1);
  SetState(right, kExtract, ValueState::kFileShort);
  right.Values[static_cast<std::size_t>(PlaceOf(kOxideMass))].Text = "156/140";
  for (int row = 0; row < kSysRowCount; ++row) {
    SetState(right, {Catalogue::kSys, row}, ValueState::kFileMissing);
  }
  return Compared(left, right);
}

TEST(Difference, TextHasConfigurationFirstAndValuesBySection) {
  test::ExpectGolden("diff.txt", DifferenceText(AllCatalogues(), Sample()));
  EXPECT_NE(DifferenceText(AllCatalogues(), Compared(Old(), New())).find("\nno difference\n"),
            std::string::npos);
}

TEST(Difference, HtmlIsAPageOfItsOwn) {
  const std::string html = DifferenceHtml(AllCatalogues(), {Sample(), Compared(Old(), New())});
  test::ExpectGolden("diff.html", html);
  EXPECT_EQ(html.find("<b>Oxide"), std::string::npos);
  EXPECT_EQ(html.find("http"), std::string::npos);
  EXPECT_EQ(html.find("<script"), std::string::npos);
}

TEST(Difference, JsonTellsBothValuesOfEveryRow) {
  const json document = json::parse(DifferenceJson(AllCatalogues(), {Sample()}));
  const json& difference = document.at("differences").at(0);
  EXPECT_EQ(difference.at("old").at("log"), "26010100");
  EXPECT_EQ(difference.at("new").at("ticks"), json({"Clean Cones", "Change Torch"}));
  EXPECT_EQ(difference.at("different"), true);
  EXPECT_EQ(difference.at("options").at(0), json({{"key", "OPGS"}, {"old", 0.0}, {"new", 1.0}}));
  EXPECT_EQ(difference.at("applicability").at(0).at("new").at("state"), "na");
  EXPECT_EQ(difference.at("missing").at(0), json({{"catalogue", "sys"}, {"in", "new"}}));
  const json& gas = difference.at("values").at(0);
  EXPECT_EQ(gas.at("catalogue"), "meter");
  EXPECT_EQ(gas.at("row"), 4);
  EXPECT_EQ(gas.at("label"), "Carrier Gas");
  EXPECT_EQ(gas.at("old"), json({{"state", "ok"}, {"value", 1.05}, {"text", "1.05"}}));
  EXPECT_NEAR(gas.at("difference").get<double>(), 0.02, 1e-12);
}

}  // namespace
}  // namespace logbook::insight
