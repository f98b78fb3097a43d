// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/VisibleText.h"

#include <gtest/gtest.h>

#include "insight/TextTable.h"

namespace logbook::insight {
namespace {

TEST(VisibleText, ControlCharactersAreShownAndNotSent) {
  EXPECT_EQ(VisibleText("a\x1B[2Jb\x07\x7F\r"), "a\\x1B[2Jb\\x07\\x7F\\x0D");
  EXPECT_EQ(VisibleText("\u009B31m"), "\\u009B31m");
  EXPECT_EQ(VisibleText(std::string_view("\0", 1)), "\\x00");
}

TEST(VisibleText, CharactersThatTurnTheDirectionAreShown) {
  EXPECT_EQ(VisibleText("\u202Egpj.exe\u2069\u200F"), "\\u202Egpj.exe\\u2069\\u200F");
}

TEST(VisibleText, BytesThatAreNoCharactersAreShown) {
  EXPECT_EQ(VisibleText("a\xFF\xC3"), "a\\xFF\\xC3");
  // Half a surrogate pair, as the name of a folder may hold it.
  EXPECT_EQ(VisibleText("a\xED\xA0\x80z"), "a\\xED\\xA0\\x80z");
  EXPECT_EQ(VisibleName("\xED\xBF\xBF"), "\\xED\\xBF\\xBF");
}

TEST(VisibleText, AllElseStays) {
  const std::string text = "Konen \u00E4 \u3042\tC:\\logs\nnext \U0001F642";
  EXPECT_EQ(VisibleText(text), text);
}

TEST(VisibleText, ANameStaysInItsLine) {
  EXPECT_EQ(VisibleName("a\nlog root: all is well\t\x1B"), "a\\x0Alog root: all is well\\x09\\x1B");
}

TEST(VisibleText, ATableIsAsWideAsWhatItShows) {
  TextTable table({"A", "B"});
  table.Add({"\x1B", "x"});
  table.Add({"12345", "y"});
  table.AddLine("line \x1B");
  EXPECT_EQ(table.Text(), "A      B\n\\x1B   x\n12345  y\nline \\x1B\n");
}

}  // namespace
}  // namespace logbook::insight
