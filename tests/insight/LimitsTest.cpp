// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Limits.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

Limits Parsed(std::string_view keys) {
  return ParseLimits("limits.ini", "[tune:63]\n" + std::string(keys)).at(0).limits;
}

std::string ErrorOf(std::string_view text) {
  try {
    ParseLimits("limits.ini", text);
  } catch (const SettingsError& error) {
    return error.what();
  }
  return "none";
}

TEST(Limits, ASectionIsARow) {
  const auto rows = ParseLimits(
      "limits.ini",
      "[Oxide]\nreference=1.2\nTolerance=10%\nAction=0.6\nSide=Above\n[meter:14]\nReference=2\n"
      "Action=1\n");
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].row, "Oxide");
  EXPECT_EQ(rows[0].line, 1);
  EXPECT_EQ(rows[0].limits.reference, 1.2);
  EXPECT_TRUE(rows[0].limits.tolerance.value().percent);
  EXPECT_EQ(rows[0].limits.action.value().number, 0.6);
  EXPECT_EQ(rows[0].limits.side, Limits::Side::kAbove);
  EXPECT_EQ(rows[1].row, "meter:14");
  EXPECT_FALSE(rows[1].limits.tolerance);
}

TEST(Limits, AVerdictGoesByTheDistanceFromTheReference) {
  const Limits limits = Parsed("Reference=-200\nTolerance=10%\nAction=30\n");
  EXPECT_EQ(JudgeValue(limits, -200), Verdict::kWithin);
  EXPECT_EQ(JudgeValue(limits, -219), Verdict::kWithin);
  EXPECT_EQ(JudgeValue(limits, -179), Verdict::kBeyondTolerance);
  EXPECT_EQ(JudgeValue(limits, -221), Verdict::kBeyondTolerance);
  EXPECT_EQ(JudgeValue(limits, -231), Verdict::kBeyondAction);
  EXPECT_EQ(JudgeValue(limits, 0), Verdict::kBeyondAction);
}

TEST(Limits, AValueOnALimitIsWithinAlsoWhereItsDecimalsAreNotExact) {
  const Limits limits = Parsed("Reference=1.2\nTolerance=10%\n");
  EXPECT_EQ(JudgeValue(limits, 1.32), Verdict::kWithin);
  EXPECT_EQ(JudgeValue(limits, 1.08), Verdict::kWithin);
  EXPECT_EQ(JudgeValue(limits, 1.3201), Verdict::kBeyondTolerance);
  EXPECT_EQ(JudgeValue(Parsed("Reference=0.3\nAction=0.1\n"), 0.1 + 0.1), Verdict::kWithin);
}

TEST(Limits, OneSideAloneCanCount) {
  const Limits above = Parsed("Reference=1\nTolerance=0.1\nSide=above\n");
  EXPECT_EQ(JudgeValue(above, 0), Verdict::kWithin);
  EXPECT_EQ(JudgeValue(above, 2), Verdict::kBeyondTolerance);
  const Limits below = Parsed("Reference=1\nTolerance=0.1\nSide=below\n");
  EXPECT_EQ(JudgeValue(below, 0), Verdict::kBeyondTolerance);
  EXPECT_EQ(JudgeValue(below, 2), Verdict::kWithin);
}

TEST(Limits, WhatMakesNoSenseIsToldWithItsLine) {
  EXPECT_EQ(ErrorOf("[a]\nTolerance=1\n"), "limits.ini:1: the row has no Reference");
  EXPECT_EQ(ErrorOf("[a]\nReference=1\n"), "limits.ini:1: neither Tolerance nor Action");
  EXPECT_EQ(ErrorOf("[a]\nReference=x\n"), "limits.ini:2: Reference is not a number");
  EXPECT_EQ(ErrorOf("[a]\nReference=1\nAction=-1\n"),
            "limits.ini:3: expected a number of 0 or more, or one with \"%\" behind it");
  EXPECT_EQ(ErrorOf("[a]\nSide=left\n"), "limits.ini:2: Side is both, above or below");
  EXPECT_EQ(ErrorOf("[a]\nLimit=1\n"),
            "limits.ini:2: unknown key; the keys are Reference, Tolerance, Action and Side");
  EXPECT_EQ(ErrorOf("Reference=1\n[a]\n"), "limits.ini:1: the key stands before any section");
  EXPECT_EQ(ErrorOf("[a]\nReference=1\nTolerance=2\nAction=150%\n"),
            "limits.ini:1: Action lies nearer to the Reference than Tolerance");
}

TEST(Limits, VerdictsHaveTheirWords) {
  EXPECT_EQ(VerdictText(Verdict::kWithin), "ok");
  EXPECT_EQ(VerdictText(Verdict::kBeyondTolerance), "watch");
  EXPECT_EQ(VerdictText(Verdict::kBeyondAction), "act");
}

}  // namespace
}  // namespace logbook::insight
