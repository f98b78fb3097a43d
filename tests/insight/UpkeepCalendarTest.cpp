// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The calendar of what is due, held against golden files and read back by a program that shares
// nothing with the one that wrote it (python3-icalendar).

#include "insight/UpkeepCalendar.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "GoldenText.h"
#include "SampleTrends.h"
#include "insight/RowNames.h"
#include "support/RunProgram.h"
#include "support/TestMachine.h"

namespace logbook::insight {
namespace {

using nlohmann::json;
using test::ExpectGolden;
using test::Noon;

const CalendarRoot kRoot = {"0123456789abcdef", "maintain, inst1"};
const std::chrono::sys_seconds kFirst{std::chrono::seconds(1767268800)};   // 2026-01-01 12:00 UTC
const std::chrono::sys_seconds kSecond{std::chrono::seconds(1769947200)};  // 2026-02-01 12:00 UTC

// An item done on a day and due an interval later.
DueItem Item(int item, std::string_view done, std::string_view interval) {
  DueItem result{.item = item, .label = TickLabels().at(static_cast<std::size_t>(item))};
  result.certain = TickDate{Noon(done), "26010100"};
  result.claimed = result.certain;
  result.interval = ParseInterval(interval);
  result.due = result.interval->After(DayOf(result.certain->when));
  return result;
}

DueItem WithoutDay(int item) {
  return {.item = item, .label = TickLabels().at(static_cast<std::size_t>(item))};
}

// The Python that runs the independent reader; empty if there is none.
const std::string& Reader() {
  static const std::string python = test::PythonWith("icalendar");
  return python;
}

// What the independent reader finds: one object an event.
json ReadBack(const std::string& calendar) {
  const test::TestMachine scratch;
  const std::string file = scratch.home() + "/calendar.ics";
  std::ofstream(file, std::ios::binary) << calendar;
  const std::string script =
      "import icalendar, json, sys\n"
      "events = []\n"
      "for e in icalendar.Calendar.from_ical(open(sys.argv[1], 'rb').read()).walk('VEVENT'):\n"
      "  events.append({k: str(e[k]) for k in ('UID', 'SUMMARY', 'DESCRIPTION', 'STATUS')}\n"
      "    | {'SEQUENCE': int(e['SEQUENCE']), 'DTSTAMP': e['DTSTAMP'].dt.isoformat(),\n"
      "       'DTSTART': e['DTSTART'].dt.isoformat(), 'DTEND': e['DTEND'].dt.isoformat()})\n"
      "print(json.dumps(events))\n";
  std::ofstream(scratch.home() + "/read.py") << script;
  const test::ProgramResult result = test::RunProgram(
      Reader() + " " + test::Quoted(scratch.home() + "/read.py") + " " + test::Quoted(file));
  EXPECT_EQ(result.status, 0) << result.output;
  return json::parse(result.output, nullptr, false);
}

bool HasReader() {
  return !Reader().empty();
}

// Both changes of European summer time and 29 February: the days before, on and after.
std::vector<DueItem> OddDays() {
  return {Item(0, "2026-03-27", "2 days"), Item(1, "2026-03-28", "2 days"),
          Item(2, "2026-10-23", "2 days"), Item(3, "2026-10-24", "2 days"),
          Item(4, "2028-02-28", "1 day"),  Item(5, "2028-02-28", "2 days"),
          Item(6, "2028-02-29", "1 year"), Item(7, "2028-01-31", "1 month")};
}

TEST(UpkeepCalendar, EventsAreWholeLocalDaysAcrossSummerTimeAndLeapDays) {
  const std::string calendar = UpdateCalendar("", kRoot, OddDays(), kFirst);
  ExpectGolden("due-odd-days.ics", calendar);
  if (!HasReader()) GTEST_FAIL() << "the machine has no python3-icalendar; ./test installs it";
  const json events = ReadBack(calendar);
  const std::vector<std::string> days = {"2026-03-29", "2026-03-30", "2026-10-25", "2026-10-26",
                                         "2028-02-29", "2028-03-01", "2029-02-28", "2028-02-29"};
  ASSERT_EQ(events.size(), days.size());
  for (std::size_t i = 0; i < days.size(); ++i) {
    EXPECT_EQ(events[i]["DTSTART"], days[i]) << "a date, no time";
    EXPECT_EQ(events[i]["DTEND"], DayText(ParseDay(days[i]).value() + std::chrono::days(1)));
  }
  EXPECT_EQ(events[1]["UID"], "item1-0123456789abcdef@maintenance-logbook");
  EXPECT_EQ(events[1]["SUMMARY"], "Clean Cones: maintain, inst1");
  EXPECT_EQ(events[1]["DESCRIPTION"], "Every 2 days.\nLast certain: 2026-03-28 (log 26010100).");
  EXPECT_EQ(events[1]["DTSTAMP"], "2026-01-01T12:00:00+00:00");
  EXPECT_EQ(events[1]["SEQUENCE"], 0);
}

TEST(UpkeepCalendar, ASecondWritingChangesNothingWhereNothingHasChanged) {
  const std::string first = UpdateCalendar("", kRoot, OddDays(), kFirst);
  EXPECT_EQ(UpdateCalendar(first, kRoot, OddDays(), kSecond), first);
}

TEST(UpkeepCalendar, ASecondWritingUpdatesAndNeverDoubles) {
  const std::string first = UpdateCalendar("", kRoot, OddDays(), kFirst);
  std::vector<DueItem> later = OddDays();
  later[1] = Item(1, "2026-04-20", "2 days");
  const std::string second = UpdateCalendar(first, kRoot, later, kSecond);
  ExpectGolden("due-updated.ics", second);
  if (!HasReader()) GTEST_FAIL() << "the machine has no python3-icalendar; ./test installs it";
  const json events = ReadBack(second);
  ASSERT_EQ(events.size(), 8U);
  EXPECT_EQ(events[1]["UID"], ReadBack(first)[1]["UID"]);
  EXPECT_EQ(events[1]["DTSTART"], "2026-04-22");
  EXPECT_EQ(events[1]["SEQUENCE"], 1);
  EXPECT_EQ(events[1]["DTSTAMP"], "2026-02-01T12:00:00+00:00");
  EXPECT_EQ(events[2], ReadBack(first)[2]);
}

TEST(UpkeepCalendar, AnItemThatIsNoLongerDueIsCancelledAndComesBack) {
  if (!HasReader()) GTEST_FAIL() << "the machine has no python3-icalendar; ./test installs it";
  const std::string first =
      UpdateCalendar("", kRoot, std::vector{Item(1, "2026-01-01", "30")}, kFirst);
  const std::string second = UpdateCalendar(first, kRoot, std::vector{WithoutDay(1)}, kSecond);
  EXPECT_EQ(ReadBack(second)[0]["STATUS"], "CANCELLED");
  EXPECT_EQ(ReadBack(second)[0]["SEQUENCE"], 1);
  EXPECT_EQ(UpdateCalendar(second, kRoot, std::vector{WithoutDay(1)}, kSecond), second);
  const std::string third =
      UpdateCalendar(second, kRoot, std::vector{Item(1, "2026-01-01", "30")}, kSecond);
  ASSERT_EQ(ReadBack(third).size(), 1U);
  EXPECT_EQ(ReadBack(third)[0]["STATUS"], "CONFIRMED");
  EXPECT_EQ(ReadBack(third)[0]["SEQUENCE"], 2);
}

TEST(UpkeepCalendar, WhatElseTheCalendarHoldsStays) {
  if (!HasReader()) GTEST_FAIL() << "the machine has no python3-icalendar; ./test installs it";
  const std::string foreign =
      "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//other//EN\r\nX-WR-CALNAME:Lab\r\n"
      "BEGIN:VEVENT\r\nUID:party\r\nDTSTAMP:20250101T000000Z\r\nDTSTART;VALUE=DATE:20260501\r\n"
      "DTEND;VALUE=DATE:20260502\r\nSUMMARY:Party\r\nDESCRIPTION:x\r\nSTATUS:TENTATIVE\r\n"
      "SEQUENCE:3\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
  const CalendarRoot other = {"fedcba9876543210", "other"};
  std::string calendar =
      UpdateCalendar(foreign, kRoot, std::vector{Item(1, "2026-01-01", "30")}, kFirst);
  calendar = UpdateCalendar(calendar, other, std::vector{Item(1, "2026-01-05", "30")}, kFirst);
  const json events = ReadBack(calendar);
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[0]["SUMMARY"], "Party");
  EXPECT_EQ(events[0]["SEQUENCE"], 3);
  EXPECT_NE(events[1]["UID"], events[2]["UID"]);
  EXPECT_NE(calendar.find("X-WR-CALNAME:Lab"), std::string::npos);
}

TEST(UpkeepCalendar, ATextThatIsNoCalendarIsRefused) {
  const std::vector<DueItem> items = {Item(1, "2026-01-01", "30")};
  for (const char* text :
       {"hello", "BEGIN:VEVENT\r\nUID:1\r\nEND:VEVENT\r\n",
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nno property\r\nEND:VCALENDAR\r\n",
        "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\nBEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n"}) {
    EXPECT_THROW(UpdateCalendar(text, kRoot, items, kFirst), CalendarError) << text;
  }
}

TEST(UpkeepCalendar, ACalendarEndsWithTheLastYearOfItsFormat) {
  const std::string calendar =
      UpdateCalendar("", kRoot, std::vector{Item(1, "9999-12-01", "1 year")}, kFirst);
  EXPECT_EQ(calendar.find("VEVENT"), std::string::npos);
}

}  // namespace
}  // namespace logbook::insight
