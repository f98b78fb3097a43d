// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ProgressLine.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

using Step = UpdateProgress::Step;

TEST(ProgressLine, TellsItemsRateAndTimeLeft) {
  EXPECT_EQ(ProgressText({Step::kReading, 1200, 10000}, 2),
            "reading logs: 1200 of 10000, 600/s, 15 s left");
  EXPECT_EQ(ProgressText({Step::kLooking, 0, 5}, 2), "looking at logs: 0 of 5");
}

TEST(ProgressLine, IsQuietForASecondThenComesEachTenth) {
  ProgressPace pace;
  EXPECT_EQ(pace.Line({Step::kLooking, 1, 10}, 100.0), "");
  EXPECT_EQ(pace.Line({Step::kLooking, 2, 10}, 100.9), "");
  EXPECT_FALSE(pace.HasShown());
  EXPECT_NE(pace.Line({Step::kLooking, 3, 10}, 101.0), "");
  EXPECT_TRUE(pace.HasShown());
  EXPECT_EQ(pace.Line({Step::kLooking, 4, 10}, 101.05), "");
  EXPECT_EQ(pace.Line({Step::kReading, 0, 4}, 101.25), "reading logs: 0 of 4");
  EXPECT_EQ(pace.Line({Step::kReading, 2, 4}, 102.25), "reading logs: 2 of 4, 2/s, 1 s left");
}

}  // namespace
}  // namespace logbook::insight
