// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Wear.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <set>
#include <string>

namespace logbook::host {
namespace {

constexpr std::size_t kConesChanged = 2;
constexpr std::size_t kMultiplierChanged = 17;

TEST(Wear, PartsAgeUntilThePlanHasThemChanged) {
  for (const Wear part :
       {Wear::kCones, Wear::kMultiplier, Wear::kOil, Wear::kTubing, Wear::kFilter, Wear::kTorch}) {
    EXPECT_EQ(WearAt(0, part), 0.0);
    int changes = 0;
    for (int log = 1; log <= 400; ++log) {
      const double before = WearAt(log - 1, part), now = WearAt(log, part);
      EXPECT_GE(now, 0.0);
      EXPECT_LT(now, 1.0);
      if (now < before) {
        EXPECT_EQ(now, 0.0) << log;
        ++changes;
      } else {
        EXPECT_GT(now, before) << log;
      }
    }
    EXPECT_GE(changes, 1);
  }
}

TEST(Wear, NewPartsAndTheirTicksStandInTheSameLog) {
  for (int log = 1; log <= 400; ++log) {
    EXPECT_EQ(JobsDoneAt(log)[kConesChanged], WearAt(log, Wear::kCones) == 0.0) << log;
    EXPECT_EQ(JobsDoneAt(log)[kMultiplierChanged], WearAt(log, Wear::kMultiplier) == 0.0) << log;
  }
}

TEST(Wear, SeasonGoesUpAndDownWithoutALeap) {
  double low = 0, high = 0;
  for (int log = 1; log <= 200; ++log) {
    const double now = WearAt(log, Wear::kSeason);
    EXPECT_LT(std::abs(now - WearAt(log - 1, Wear::kSeason)), 0.06) << log;
    low = std::min(low, now);
    high = std::max(high, now);
  }
  EXPECT_LT(low, -0.9);
  EXPECT_GT(high, 0.9);
  EXPECT_LE(high, 1.0);
}

TEST(Wear, FirstLogHasNoJobs) {
  const auto done = JobsDoneAt(0);
  EXPECT_EQ(std::count(done.begin(), done.end(), true), 0);
}

TEST(Wear, CommentOfChangedConesHasALineInTheLocalLanguage) {
  std::set<std::string> comments;
  for (const int page : {932, 936, 949, 950, 1250, 1251, 1252}) {
    const std::string comment = CommentAt(12, page);
    EXPECT_EQ(comment.rfind("Cones changed", 0), 0u) << comment;
    EXPECT_NE(comment.find("\r\n"), std::string::npos);
    comments.insert(comment);
  }
  EXPECT_EQ(comments.size(), 7u);
}

TEST(Wear, SomeLogsHaveNoComment) {
  int empty = 0, filled = 0;
  for (int log = 0; log < 60; ++log) ++(CommentAt(log, 1252).empty() ? empty : filled);
  EXPECT_GT(empty, 2);
  EXPECT_GT(filled, 30);
}

TEST(Scatter, IsTheSameForTheSameArgumentsAndAnotherOneForOthers) {
  EXPECT_EQ(Scatter(1, 2, 3, 4), Scatter(1, 2, 3, 4));
  EXPECT_NE(Scatter(1, 2, 3, 4), Scatter(9, 2, 3, 4));
  EXPECT_NE(Scatter(1, 2, 3, 4), Scatter(1, 9, 3, 4));
  EXPECT_NE(Scatter(1, 2, 3, 4), Scatter(1, 2, 9, 4));
  EXPECT_NE(Scatter(1, 2, 3, 4), Scatter(1, 2, 3, 9));
}

TEST(Scatter, FillsTheRangeFromMinusOneToOneEvenly) {
  int below = 0;
  for (int row = 0; row < 2000; ++row) {
    const double value = Scatter(1, 0, 0, row);
    EXPECT_GE(value, -1.0);
    EXPECT_LE(value, 1.0);
    below += value < -0.5 ? 1 : 0;
  }
  EXPECT_NEAR(below, 500, 80);
}

}  // namespace
}  // namespace logbook::host
