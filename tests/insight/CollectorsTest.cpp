// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Collectors.h"

#include <gtest/gtest.h>

#include "SampleReadings.h"

namespace logbook::insight {
namespace {

using test::AllCatalogues;
using test::QuietReading;
using test::SetNumber;
using test::SetState;

constexpr RowId kOxide = {Catalogue::kTune, 63};
constexpr RowId kOxideMass = {Catalogue::kTune, 62};

TEST(Collectors, ASeriesAscendsByDateAndThenByFolder) {
  SeriesCollector collector(AllCatalogues(), {kOxide});
  const char* const kLogs[][2] = {{"26010301", "01/03/2026 10:00:00"},
                                  {"26010300", "01/03/2026 10:00:00"},
                                  {"99123100", "01/01/2026 10:00:00"}};
  for (const auto& [folder, date] : kLogs) {
    LogReading reading = QuietReading(folder, date);
    SetNumber(reading, kOxide, 1.234);
    collector.Add(reading);
  }
  const std::vector<Series> series = collector.Take({});
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

TEST(Collectors, EveryStateButOkIsAGapAndNoZero) {
  SeriesCollector collector(AllCatalogues(), {kOxide});
  int day = 1;
  for (const ValueState state : {ValueState::kNotApplicable, ValueState::kFileMissing,
                                 ValueState::kFileShort, ValueState::kNoNumber}) {
    LogReading reading = QuietReading("x", "01/0" + std::to_string(day++) + "/2026 10:00:00");
    SetState(reading, kOxide, state);
    collector.Add(reading);
  }
  const Series series = collector.Take({})[0];
  ASSERT_EQ(series.points.size(), 4U);
  for (const SeriesPoint& point : series.points) EXPECT_FALSE(point.value) << point.state;
  EXPECT_EQ(series.points[0].state, "na");
  EXPECT_EQ(series.points[3].state, "nonumber");
}

TEST(Collectors, ATextHasNoPlaceInASeries) {
  SeriesCollector collector(AllCatalogues(), {kOxideMass});
  collector.Add(QuietReading("x", "01/01/2026 10:00:00"));
  EXPECT_FALSE(collector.Take({})[0].points.at(0).value);
}

TEST(Collectors, ALogWithoutADateIsCountedAndInNoSeries) {
  SeriesCollector collector(AllCatalogues(), {kOxide});
  collector.Add(QuietReading("26010100", "13/01/2026 10:00:00"));
  collector.Add(QuietReading("26010101", ""));
  EXPECT_EQ(collector.Undated(), 2U);
  EXPECT_TRUE(collector.Take({})[0].points.empty());
}

TEST(Collectors, RecordsKnowWhetherTheyAreAutomatic) {
  UpkeepCollector collector;
  LogReading automatic = QuietReading("26010200", "01/02/2026 10:00:00");
  automatic.Automatic = true;
  automatic.Ticks[3] = true;
  collector.Add(automatic);
  collector.Add(QuietReading("26010100", "01/01/2026 10:00:00"));
  const std::vector<UpkeepRecord> records = collector.Take();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[0].kind, UpkeepRecord::Kind::kConfirmed);
  EXPECT_EQ(records[1].kind, UpkeepRecord::Kind::kAutomatic);
  EXPECT_TRUE(records[1].ticks[3]);
}

TEST(Collectors, ALogThatNobodyConfirmedSaysNothing) {
  UpkeepCollector collector;
  LogReading unfinished = QuietReading("26010200", "01/02/2026 10:00:00");
  unfinished.HasTicks = false;
  collector.Add(unfinished);
  EXPECT_TRUE(collector.Take().empty());
}

TEST(Collectors, ALogWithoutADateStandsByItsFolderWithUnknownTicks) {
  UpkeepCollector collector;
  collector.Add(QuietReading("2601020F", ""));
  collector.Add(QuietReading("copy of something", ""));
  const std::vector<UpkeepRecord> records = collector.Take();
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
