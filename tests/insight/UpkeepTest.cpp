// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/RowNames.h"
#include "insight/Upkeep.h"

#include <gtest/gtest.h>

#include "SampleTrends.h"
#include "insight/SettingsText.h"

namespace logbook::insight {
namespace {

using test::Noon;
using Kind = UpkeepRecord::Kind;

constexpr int kCleanCones = 1;
constexpr int kChangeCones = 2;

Ticks Bearing(std::initializer_list<int> items) {
  Ticks ticks{};
  for (const int item : items) ticks[static_cast<std::size_t>(item)] = true;
  return ticks;
}

UpkeepRecord Record(std::string_view day, std::initializer_list<int> items,
                    Kind kind = Kind::kConfirmed) {
  return {Noon(day), std::string(day), kind, Bearing(items)};
}

DueItem ItemOf(const std::vector<DueItem>& items, int item) {
  return items.at(static_cast<std::size_t>(item));
}

Intervals Every(int item, std::string_view interval) {
  Intervals intervals;
  intervals.items[static_cast<std::size_t>(item)] = ParseInterval(interval);
  return intervals;
}

LocalDay Day(std::string_view text) {
  return ParseDay(text).value();
}

TEST(Upkeep, ATickThatTheRecordBeforeDidNotBearIsCertain) {
  const std::vector<UpkeepRecord> records = {Record("2026-01-01", {}),
                                             Record("2026-02-01", {kCleanCones}),
                                             Record("2026-03-01", {kCleanCones, kChangeCones}),
                                             Record("2026-04-01", {kCleanCones}),
                                             Record("2026-05-01", {}),
                                             Record("2026-06-01", {kCleanCones})};
  const std::vector<Ticks> certain = CertainTicks(records);
  EXPECT_EQ(certain[0], Bearing({}));
  EXPECT_EQ(certain[1], Bearing({kCleanCones}));
  EXPECT_EQ(certain[2], Bearing({kChangeCones}));
  EXPECT_EQ(certain[3], Bearing({}));
  EXPECT_EQ(certain[5], Bearing({kCleanCones}));
}

TEST(Upkeep, AutomaticRecordsSayNothingAndHandTheirTicksOn) {
  const std::vector<UpkeepRecord> records = {Record("2026-01-01", {kCleanCones}),
                                             Record("2026-02-01", {kCleanCones}, Kind::kAutomatic),
                                             Record("2026-03-01", {kCleanCones})};
  const auto items = ReckonDue(records, {}, TickKind::kCertain, Day("2026-04-01"));
  EXPECT_EQ(ItemOf(items, kCleanCones).certain.value().log, "2026-01-01");
  EXPECT_EQ(ItemOf(items, kCleanCones).claimed.value().log, "2026-03-01");
  // The record whose ticks the automatic one repeats has been deleted.
  const std::vector<UpkeepRecord> rest = {records[1], records[2]};
  const auto left = ReckonDue(rest, {}, TickKind::kCertain, Day("2026-04-01"));
  EXPECT_FALSE(ItemOf(left, kCleanCones).certain);
  EXPECT_EQ(ItemOf(left, kCleanCones).claimed.value().log, "2026-03-01");
  const std::vector<UpkeepRecord> alone = {records[1]};
  EXPECT_FALSE(
      ItemOf(ReckonDue(alone, {}, TickKind::kClaimed, Day("2026-04-01")), kCleanCones).claimed);
}

TEST(Upkeep, BehindARecordThatCannotBeReadNoTickIsCertain) {
  const std::vector<UpkeepRecord> records = {Record("2026-01-01", {}),
                                             Record("2026-02-01", {}, Kind::kUnknown),
                                             Record("2026-03-01", {kCleanCones})};
  EXPECT_EQ(CertainTicks(records)[2], Bearing({}));
}

TEST(Upkeep, TicksOfTheFirstRecordAreCertain) {
  const std::vector<UpkeepRecord> records = {Record("2026-01-01", {kCleanCones})};
  EXPECT_EQ(CertainTicks(records)[0], Bearing({kCleanCones}));
}

TEST(Upkeep, WhatIsDueIsReckonedFromTheCertainDateUnlessAskedOtherwise) {
  const std::vector<UpkeepRecord> records = {Record("2026-01-01", {kCleanCones}),
                                             Record("2026-01-20", {kCleanCones})};
  const Intervals intervals = Every(kCleanCones, "30 days");
  const DueItem certain =
      ItemOf(ReckonDue(records, intervals, TickKind::kCertain, Day("2026-02-01")), kCleanCones);
  EXPECT_EQ(certain.due, Day("2026-01-31"));
  EXPECT_EQ(certain.days_left, -1);
  EXPECT_EQ(certain.state, DueItem::State::kOverdue);
  const DueItem claimed =
      ItemOf(ReckonDue(records, intervals, TickKind::kClaimed, Day("2026-02-01")), kCleanCones);
  EXPECT_EQ(claimed.due, Day("2026-02-19"));
  EXPECT_EQ(claimed.days_left, 18);
  EXPECT_EQ(claimed.state, DueItem::State::kOk);
}

TEST(Upkeep, StatesFollowTheDaysThatAreLeft) {
  const std::vector<UpkeepRecord> records = {Record("2026-01-01", {kCleanCones})};
  Intervals intervals = Every(kCleanCones, "30");
  intervals.soon = 5;
  intervals.items[kChangeCones] = ParseInterval("1 year");
  const auto state = [&](std::string_view today, int item) {
    return ItemOf(ReckonDue(records, intervals, TickKind::kCertain, Day(today)), item).state;
  };
  EXPECT_EQ(state("2026-01-25", kCleanCones), DueItem::State::kOk);
  EXPECT_EQ(state("2026-01-26", kCleanCones), DueItem::State::kSoon);
  EXPECT_EQ(state("2026-01-31", kCleanCones), DueItem::State::kDue);
  EXPECT_EQ(state("2026-02-01", kCleanCones), DueItem::State::kOverdue);
  EXPECT_EQ(state("2026-02-01", kChangeCones), DueItem::State::kNever);
  EXPECT_EQ(state("2026-02-01", 0), DueItem::State::kNoInterval);
}

// Europe changes to summer time on 2026-03-29 and back on 2026-10-25; the days have 23 and 25
// hours, and half past eleven at night is still the same day.
TEST(Upkeep, DaysAreThoseOfTheCalendarAcrossBothChangesOfSummerTime) {
  for (const auto& [done, due] :
       {std::pair("2026-03-28", "2026-03-30"), std::pair("2026-10-24", "2026-10-26")}) {
    UpkeepRecord record = Record(done, {kCleanCones});
    for (const int minutes : {1, 23 * 60 + 30}) {
      record.when = LocalTime(Day(done)) + std::chrono::minutes(minutes);
      const DueItem item = ItemOf(ReckonDue(std::vector{record}, Every(kCleanCones, "2 days"),
                                            TickKind::kCertain, Day(done)),
                                  kCleanCones);
      EXPECT_EQ(item.due, Day(due));
      EXPECT_EQ(item.days_left, 2);
    }
  }
}

TEST(Upkeep, IntervalsOfMonthsAndYearsFollowTheCalendarAcrossLeapDays) {
  const auto due = [](std::string_view done, std::string_view interval) {
    return DayText(ParseInterval(interval).value().After(Day(done)));
  };
  EXPECT_EQ(due("2028-02-28", "1"), "2028-02-29");
  EXPECT_EQ(due("2028-02-28", "2 days"), "2028-03-01");
  EXPECT_EQ(due("2028-02-29", "1 year"), "2029-02-28");
  EXPECT_EQ(due("2028-02-29", "4 years"), "2032-02-29");
  EXPECT_EQ(due("2028-01-31", "1 month"), "2028-02-29");
  EXPECT_EQ(due("2028-01-31", "4 weeks"), "2028-02-28");
  EXPECT_EQ(due("2027-12-31", "2 months"), "2028-02-29");
}

TEST(Upkeep, AnIntervalIsANumberWithItsUnit) {
  EXPECT_EQ(IntervalText(ParseInterval("30").value()), "30 days");
  EXPECT_EQ(IntervalText(ParseInterval("1 Day").value()), "1 day");
  EXPECT_EQ(IntervalText(ParseInterval("2weeks").value()), "14 days");
  EXPECT_EQ(IntervalText(ParseInterval("1 month").value()), "1 month");
  EXPECT_EQ(IntervalText(ParseInterval("2 years").value()), "24 months");
  for (const char* text : {"", "0", "-1", "x", "1.5 days", "30 hours", "36526", "101 years",
                           "99999999999 days", "days", "1 day x"}) {
    EXPECT_FALSE(ParseInterval(text)) << text;
  }
}

TEST(Upkeep, AnIntervalIsNoLongerThanACentury) {
  EXPECT_EQ(ParseInterval("36524 days").value().days, 36524);
  EXPECT_EQ(ParseInterval("36525 days").value().days, 36525);
  EXPECT_FALSE(ParseInterval("36526 days"));
  EXPECT_EQ(ParseInterval("1199 months").value().months, 1199);
  EXPECT_EQ(ParseInterval("1200 months").value().months, 1200);
  EXPECT_FALSE(ParseInterval("1201 months"));
  const auto soon = [](const char* days) {
    return ParseIntervals("intervals.ini", std::string("[Due]\nSoon=") + days).soon;
  };
  EXPECT_EQ(soon("36524"), 36524);
  EXPECT_EQ(soon("36525"), 36525);
  EXPECT_THROW(soon("36526"), SettingsError);
}

TEST(Upkeep, IntervalsComeFromAFileByLabelOrNumber) {
  const Intervals intervals = ParseIntervals(
      "intervals.ini", "[Due]\nSoon=14\n[Intervals]\nclean cones=2 weeks\n17=1 year\n");
  EXPECT_EQ(intervals.soon, 14);
  EXPECT_EQ(intervals.items[1].value().days, 14);
  EXPECT_EQ(intervals.items[17].value().months, 12);
  EXPECT_FALSE(intervals.items[0]);
}

TEST(Upkeep, WhatMakesNoSenseInTheFileIsToldWithItsLine) {
  const auto error = [](std::string_view text) -> std::string {
    try {
      ParseIntervals("i.ini", text);
    } catch (const SettingsError& raised) {
      return raised.what();
    }
    return "none";
  };
  EXPECT_EQ(error("[Intervals]\nClean Cone=1\n"), "i.ini:2: there is no item \"Clean Cone\"");
  EXPECT_EQ(error("[Intervals]\n18=1\n"), "i.ini:2: there is no item \"18\"");
  EXPECT_EQ(error("[Intervals]\n1=1\nClean Cones=2\n"),
            "i.ini:3: the item has an interval already");
  EXPECT_EQ(error("[Intervals]\n1=soon\n"),
            "i.ini:2: expected an interval such as \"30 days\", \"2 weeks\", \"6 months\" or \"1 "
            "year\"");
  EXPECT_EQ(error("[Due]\nLate=1\n"), "i.ini:2: the only key is Soon");
  EXPECT_EQ(error("[Due]\nSoon=x\n"), "i.ini:2: expected a number of days");
  EXPECT_EQ(error("\n[Other]\n"), "i.ini:2: the sections are [Intervals] and [Due]");
  EXPECT_EQ(error("1=1\n"), "i.ini:1: the sections are [Intervals] and [Due]");
}

TEST(Upkeep, MarksAreTheCertainTicksOfTheChosenItems) {
  const std::vector<UpkeepRecord> records = {
      Record("2026-01-01", {kCleanCones, kChangeCones}), Record("2026-02-01", {kCleanCones}),
      Record("2026-03-01", {kCleanCones}, Kind::kAutomatic), Record("2026-04-01", {17})};
  const auto certain = MarksOf(records, TickKind::kCertain, Bearing({kCleanCones, 17}));
  ASSERT_EQ(certain.size(), 2U);
  EXPECT_EQ(certain[0].labels, std::vector<std::string>{"Clean Cones"});
  EXPECT_EQ(certain[0].log, "2026-01-01");
  EXPECT_EQ(certain[1].labels, std::vector<std::string>{"Change EM"});
  const auto claimed = MarksOf(records, TickKind::kClaimed, Bearing({kCleanCones}));
  ASSERT_EQ(claimed.size(), 2U);
  EXPECT_EQ(claimed[1].when, Noon("2026-02-01"));
}

TEST(Upkeep, TheItemsHaveTheLabelsOfTheEditor) {
  const std::vector<std::string> labels = TickLabels();
  ASSERT_EQ(labels.size(), 18U);
  EXPECT_EQ(labels.front(), "Check Drain Vessel");
  EXPECT_EQ(labels[12], "Check Rotary Pump Oil");
  EXPECT_EQ(labels.back(), "Change EM");
}

}  // namespace
}  // namespace logbook::insight
