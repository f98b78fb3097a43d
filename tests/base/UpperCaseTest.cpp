// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/UpperCase.h"

#include <gtest/gtest.h>

namespace logbook::test {
namespace {

TEST(UpperCaseTest, LettersOfSeveralScriptsHaveTheirUpperCase) {
  const std::pair<const char*, const char*> cases[] = {{"", ""},           {"abz{AZ09", "ABZ{AZ09"},
                                                       {"éàÿ", "ÉÀŸ"},     {"жёя", "ЖЁЯ"},
                                                       {"αως", "ΑΩΣ"},     {"čžđ", "ČŽĐ"},
                                                       {"ａｚ", "ＡＺ"},   {"漢字ｱ", "漢字ｱ"},
                                                       {"×÷ßªº", "×÷ßªº"}, {"ⅷ", "Ⅷ"},
                                                       {"😀", "😀"}};
  for (const auto& [text, upper] : cases) {
    EXPECT_EQ(UpperCaseText(text), upper) << text;
    EXPECT_TRUE(EqualIgnoringCase(text, upper)) << text;
  }
}

TEST(UpperCaseTest, NoLetterBeyondAsciiBecomesAnAsciiOne) {
  for (const char* text : {"ı", "ſ", "µ"}) EXPECT_EQ(UpperCaseText(text), text);
  EXPECT_FALSE(EqualIgnoringCase("lıst", "LIST"));
}

TEST(UpperCaseTest, BytesThatAreNoUtf8Stay) {
  EXPECT_EQ(UpperCaseText("a\xFFz"), "A\xFFZ");
  EXPECT_FALSE(EqualIgnoringCase("a\xFF", "a\xFE"));
}

TEST(UpperCaseTest, TextsOfOtherLengthsOrLettersDiffer) {
  EXPECT_FALSE(EqualIgnoringCase("log", "logs"));
  EXPECT_FALSE(EqualIgnoringCase("log", "lag"));
  EXPECT_FALSE(EqualIgnoringCase("e", "é"));
  EXPECT_FALSE(EqualIgnoringCase("@", "`"));
}

TEST(UpperCaseTest, ATextEndsInItsLastLettersOfAnyCase) {
  for (const char* text : {"quorex.chm", "QUOREX.CHM", ".Chm", "é.chm"})
    EXPECT_TRUE(EndsInIgnoringCase(text, ".chm")) << text;
  for (const char* text : {"", "chm", "quorex.chm ", "quorex.hlp", "quorex.ſhm"})
    EXPECT_FALSE(EndsInIgnoringCase(text, ".chm")) << text;
  EXPECT_TRUE(EndsInIgnoringCase("Menü", "NÜ"));
  EXPECT_TRUE(EndsInIgnoringCase("", ""));
}

TEST(UpperCaseTest, AWordIsFoundAnywhereInAText) {
  for (const char* text : {"CE", "HOST ce", "ACE", "aCEb"})
    EXPECT_TRUE(ContainsIgnoringCase(text, "Ce")) << text;
  for (const char* text : {"", "C E", "EC", "C", "çe"})
    EXPECT_FALSE(ContainsIgnoringCase(text, "CE")) << text;
  EXPECT_TRUE(ContainsIgnoringCase("Prüfung", "RÜF"));
  EXPECT_TRUE(ContainsIgnoringCase("", ""));
  EXPECT_TRUE(ContainsIgnoringCase("abc", ""));
  EXPECT_TRUE(ContainsIgnoringCase("\xFFmce", "CE")) << "behind a byte that is no UTF-8";
}

}  // namespace
}  // namespace logbook::test
