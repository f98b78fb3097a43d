// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/SettingsText.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

std::string ErrorOf(std::string_view text) {
  try {
    ParseSettings("a.ini", text);
  } catch (const SettingsError& error) {
    return error.what();
  }
  return "none";
}

TEST(SettingsText, SectionsAndEntriesComeInTheirOrderWithTheirLines) {
  const auto sections = ParseSettings(
      "a.ini",
      "\xEF\xBB\xBF; comment\r\nfree = 1\r\n\r\n[ One ]\r\nA=x = y\r\nb = \" q \"\n# n\n[one]");
  ASSERT_EQ(sections.size(), 3U);
  EXPECT_EQ(sections[0].name, "");
  EXPECT_EQ(sections[0].line, 0);
  ASSERT_EQ(sections[0].entries.size(), 1U);
  EXPECT_EQ(sections[0].entries[0].line, 2);
  EXPECT_EQ(sections[1].name, "One");
  EXPECT_EQ(sections[1].line, 4);
  EXPECT_EQ(sections[1].entries[0].key, "A");
  EXPECT_EQ(sections[1].entries[0].value, "x = y");
  EXPECT_EQ(sections[1].entries[1].value, " q ");
  EXPECT_EQ(sections[2].name, "one");
}

TEST(SettingsText, WhatCannotBeUnderstoodIsToldWithItsLine) {
  EXPECT_EQ(ErrorOf("[a]\nword\n"), "a.ini:2: expected \"key = value\" or \"[section]\"");
  EXPECT_EQ(ErrorOf("[a\n"), "a.ini:1: a section ends with \"]\"");
  EXPECT_EQ(ErrorOf("\n[ ]\n"), "a.ini:2: the section has no name");
  EXPECT_EQ(ErrorOf("=1"), "a.ini:1: there is no key before \"=\"");
  EXPECT_EQ(ErrorOf("[a]\nKey=1\nkey=2\n"), "a.ini:3: the key stands in this section already");
  EXPECT_EQ(ErrorOf(""), "none");
}

TEST(SettingsText, ANumberIsTheWholeText) {
  EXPECT_EQ(WholeNumber("1.5"), 1.5);
  EXPECT_EQ(WholeNumber(" +2e3 "), 2000);
  EXPECT_EQ(WholeNumber("-0.25"), -0.25);
  for (const char* text : {"", " ", "1,5", "1.5x", "x", "inf", "nan", "1e999", "+-1"}) {
    EXPECT_FALSE(WholeNumber(text)) << text;
  }
}

TEST(SettingsText, AnAmountIsANumberOrAShare) {
  EXPECT_EQ(ParseAmount("0.5").value().Of(-200), 0.5);
  EXPECT_EQ(ParseAmount("10 %").value().Of(-200), 20);
  EXPECT_EQ(ParseAmount("0").value().Of(1), 0);
  for (const char* text : {"", "%", "-1", "-1%", "1%%", "a%"}) {
    EXPECT_FALSE(ParseAmount(text)) << text;
  }
}

}  // namespace
}  // namespace logbook::insight
