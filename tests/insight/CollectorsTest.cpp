// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Collectors.h"

#include <gtest/gtest.h>

#include "SampleReadings.h"

namespace logbook::insight {
namespace {

using test::AllCatalogues;

constexpr RowId kOxide = {Catalogue::kTune, 63};
constexpr RowId kOxideMass = {Catalogue::kTune, 62};

const std::vector<RowGroup> kOxideAlone = {{kOxide}};

FoundLog Found(const std::string& folder, const std::string& date, RowValue value = {}) {
  FoundLog log;
  log.Folder = folder;
  log.Date = ParseLogDate(date);
  log.HasTicks = true;
  log.Values = {std::move(value)};
  log.ValueRows = {kOxide};
  return log;
}

FindResult Result(std::vector<FoundLog> logs) {
  return {std::move(logs), 0};
}

TEST(Collectors, ASeriesAscendsByDateAndThenByFolder) {
  const RowValue value = {ValueState::kOk, 1.234, {}};
  const std::vector<Series> series =
      SeriesOf(AllCatalogues(), kOxideAlone,
               Result({Found("26010301", "01/03/2026 10:00:00", value),
                       Found("26010300", "01/03/2026 10:00:00", value),
                       Found("99123100", "01/01/2026 10:00:00", value)}),
               {});
  ASSERT_EQ(series.size(), 1U);
  EXPECT_EQ(series[0].catalogue, "tune");
  EXPECT_EQ(series[0].row, 63);
  EXPECT_EQ(series[0].label, "Oxide");
  EXPECT_EQ(series[0].unit, "%");
  ASSERT_EQ(series[0].points.size(), 3U);
  EXPECT_EQ(series[0].points[0].log, "99123100");
  EXPECT_EQ(series[0].points[1].log, "26010300");
  EXPECT_EQ(series[0].points[2].log, "26010301");
  EXPECT_EQ(series[0].points[0].value, 1.234);
  EXPECT_EQ(series[0].points[0].text, "1.23");
}

TEST(Collectors, MarksOutsideOfTheLogsAreLeftOut) {
  std::vector<MaintenanceMark> marks;
  for (const char* day : {"2026-01-01", "2026-01-02", "2026-01-03", "2026-01-04"}) {
    marks.push_back({LocalTime(ParseDay(day).value()), {"Clean Cones"}, day});
  }
  const Series series = SeriesOf(
      AllCatalogues(), kOxideAlone,
      Result({Found("a", "01/02/2026 00:00:00"), Found("b", "01/03/2026 12:00:00")}), marks)[0];
  ASSERT_EQ(series.marks.size(), 2U);
  EXPECT_EQ(series.marks[0].log, "2026-01-02");
  EXPECT_EQ(series.marks[1].log, "2026-01-03");
}

TEST(Collectors, EveryStateButOkIsAGapAndNoZero) {
  std::vector<FoundLog> logs;
  for (const ValueState state : {ValueState::kNotApplicable, ValueState::kFileMissing,
                                 ValueState::kFileShort, ValueState::kNoNumber}) {
    logs.push_back(Found("x", "01/01/2026 10:00:00", {state, 0, {}}));
  }
  const Series series = SeriesOf(AllCatalogues(), kOxideAlone, Result(logs), {})[0];
  ASSERT_EQ(series.points.size(), 4U);
  for (const SeriesPoint& point : series.points) EXPECT_FALSE(point.value) << point.state;
  EXPECT_EQ(series.points[0].state, "na");
  EXPECT_EQ(series.points[3].state, "nonumber");
}

TEST(Collectors, ATextHasNoPlaceInASeries) {
  FoundLog log = Found("x", "01/01/2026 10:00:00", {ValueState::kOk, 0, "156/140"});
  log.ValueRows = {kOxideMass};
  EXPECT_FALSE(SeriesOf(AllCatalogues(), {{kOxideMass}}, Result({log}), {})[0].points.at(0).value);
}

TEST(Collectors, ALogWithoutADateIsCountedAndInNoSeries) {
  const FindResult found =
      Result({Found("26010100", "13/01/2026 10:00:00"), Found("26010101", "")});
  EXPECT_EQ(CountUndated(found), 2U);
  EXPECT_TRUE(SeriesOf(AllCatalogues(), kOxideAlone, found, {})[0].points.empty());
}

TEST(Collectors, RecordsKnowWhetherTheyAreAutomatic) {
  FoundLog automatic = Found("26010200", "01/02/2026 10:00:00");
  automatic.Automatic = true;
  automatic.Ticks[3] = true;
  const std::vector<UpkeepRecord> records =
      RecordsOf(Result({automatic, Found("26010100", "01/01/2026 10:00:00")}));
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].kind, UpkeepRecord::Kind::kConfirmed);
  EXPECT_EQ(records[1].kind, UpkeepRecord::Kind::kAutomatic);
  EXPECT_TRUE(records[1].ticks[3]);
}

TEST(Collectors, ALogThatNobodyConfirmedSaysNothing) {
  FoundLog unfinished = Found("26010200", "01/02/2026 10:00:00");
  unfinished.HasTicks = false;
  EXPECT_TRUE(RecordsOf(Result({unfinished})).empty());
}

TEST(Collectors, ALogWithoutADateStandsByItsFolderWithUnknownTicks) {
  const std::vector<UpkeepRecord> records =
      RecordsOf(Result({Found("2601020F", ""), Found("copy of something", "")}));
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].kind, UpkeepRecord::Kind::kUnknown);
  EXPECT_EQ(TimeText(records[0].when), "2026-01-02T00:00:00");
}

TEST(Collectors, AFolderIsNamedByADay) {
  EXPECT_EQ(DayText(DayOfFolder("26111510").value()), "2026-11-15");
  EXPECT_EQ(DayText(DayOfFolder("000229FF").value()), "2000-02-29");
  EXPECT_EQ(DayText(DayOfFolder("79123100").value()), "2079-12-31");
  EXPECT_EQ(DayText(DayOfFolder("80010100").value()), "1980-01-01");
  for (const char* name :
       {"", "261115", "2611150f", "26113100", "2611150G", "261115000", "x6111500", "26131500"}) {
    EXPECT_FALSE(DayOfFolder(name)) << name;
  }
}

}  // namespace
}  // namespace logbook::insight
