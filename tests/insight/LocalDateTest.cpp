// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/LocalDate.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

LocalDay Day(std::string_view text) {
  return ParseDay(text).value();
}

TEST(LocalDate, ADayIsYearMonthAndDay) {
  EXPECT_EQ(DayText(Day("2026-11-15")), "2026-11-15");
  EXPECT_EQ(DayText(Day("0001-01-01")), "0001-01-01");
  EXPECT_EQ(DayText(Day("2028-02-29")), "2028-02-29");
  EXPECT_EQ((Day("2028-03-01") - Day("2028-02-28")).count(), 2);
}

TEST(LocalDate, OtherTextsAreNoDay) {
  for (const char* text : {"", "2026-1-15", "2026-13-01", "2027-02-29", "2026-00-10", "2026-01-00",
                           "0000-01-01", "2026/01/01", "2026-01-01 ", "20x6-01-01", "-026-01-01"}) {
    EXPECT_FALSE(ParseDay(text)) << text;
  }
}

TEST(LocalDate, ATimeIsWrittenWithItsDay) {
  EXPECT_EQ(TimeText(Day("2026-11-15") + std::chrono::seconds(5 * 3600 + 9 * 60 + 59)),
            "2026-11-15T05:09:59");
  EXPECT_EQ(TimeText(Day("1969-12-31") + std::chrono::hours(23)), "1969-12-31T23:00:00");
}

TEST(LocalDate, AMonthLaterIsTheSameDayOrTheMonthsLast) {
  EXPECT_EQ(AddMonths(Day("2026-01-15"), 1), Day("2026-02-15"));
  EXPECT_EQ(AddMonths(Day("2026-01-31"), 1), Day("2026-02-28"));
  EXPECT_EQ(AddMonths(Day("2028-01-31"), 1), Day("2028-02-29"));
  EXPECT_EQ(AddMonths(Day("2028-02-29"), 12), Day("2029-02-28"));
  EXPECT_EQ(AddMonths(Day("2028-02-29"), 48), Day("2032-02-29"));
  EXPECT_EQ(AddMonths(Day("2026-11-30"), 3), Day("2027-02-28"));
  EXPECT_EQ(AddMonths(Day("2026-12-31"), 0), Day("2026-12-31"));
}

TEST(LocalDate, YearsOfFiveDigitsAreWrittenWhole) {
  EXPECT_EQ(DayText(AddMonths(Day("9999-06-01"), 12)), "10000-06-01");
}

}  // namespace
}  // namespace logbook::insight
