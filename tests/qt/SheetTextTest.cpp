// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SheetText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>
#include <QPdfWriter>

#include "qt/SheetPainter.h"
#include "qt/SheetPrinting.h"

namespace logbook {
namespace {

using testing::ElementsAre;

std::vector<ColumnBand> Bands(int count, double width) {
  std::vector<ColumnBand> bands;
  for (int i = 0; i < count; ++i) bands.push_back({i * width, (i + 1) * width});
  return bands;
}

// What stands on each page of a text whose characters are 10 wide, those beyond ASCII 20.
std::vector<std::string> Pages(const QString& text, double left, int count, double width) {
  const auto width_of = [](QStringView character) { return character[0] < u'\x80' ? 10.0 : 20.0; };
  std::vector<std::string> pages;
  for (const TextStrip& strip : CutAtBands(text, width_of, left, Bands(count, width)))
    pages.push_back(text.mid(strip.begin, strip.end - strip.begin).toStdString());
  return pages;
}

TEST(CutAtBands, ACharacterStandsOnThePageOnWhichItBegins) {
  EXPECT_THAT(Pages(QStringLiteral("abcdefgh"), 0, 3, 30), ElementsAre("abc", "def", "gh"));
  EXPECT_THAT(Pages(QStringLiteral("abcdefgh"), 20, 4, 30), ElementsAre("a", "bcd", "efg", "h"));
  EXPECT_THAT(Pages(QStringLiteral("abé漢c"), 0, 3, 30), ElementsAre("abé", "漢", "c"));
}

TEST(CutAtBands, AStripSaysWhereItsFirstCharacterBegins) {
  const auto width_of = [](QStringView) { return 20.0; };
  const auto strips = CutAtBands(QStringLiteral("abcd"), width_of, 5, Bands(3, 30));
  EXPECT_EQ(strips[0].left, 0);
  EXPECT_EQ(strips[1].left, 40) << "b hangs over, c is the first that begins there";
  EXPECT_EQ(strips[2].left, 60);
}

TEST(CutAtBands, BaseAndMarksStayTogether) {
  EXPECT_THAT(Pages(QStringLiteral("ae\u0301b"), 0, 3, 10), ElementsAre("a", "e\u0301", "b"));
  EXPECT_THAT(Pages(QStringLiteral("\U0001F600a"), 0, 2, 20), ElementsAre("\U0001F600", "a"));
}

TEST(CutAtBands, WhatBeginsBehindTheLastPageIsLeftOut) {
  EXPECT_THAT(Pages(QStringLiteral("abcdef"), 0, 2, 20), ElementsAre("ab", "cd"));
  EXPECT_THAT(Pages(QString(), 0, 2, 20), ElementsAre("", ""));
}

TEST(CutAtBands, EachCharacterIsAskedForOnceHoweverManyPagesThereAre) {
  int asked = 0;
  const auto width_of = [&](QStringView) {
    ++asked;
    return 10.0;
  };
  CutAtBands(QString(65533, QLatin1Char('x')), width_of, 0, Bands(729, 900));
  EXPECT_EQ(asked, 65533);
  asked = 0;
  CutAtBands(QString(20000, QChar(0x6F22)), width_of, 0, Bands(729, 900));
  EXPECT_EQ(asked, 20000);
}

class SheetTextTest : public testing::Test {
 protected:
  SheetTextTest() { buffer.open(QIODevice::WriteOnly); }
  Typeface Face(const char* name, int code_page) {
    return Typeface({name, 9}, *CodePage::Find(code_page), writer);
  }

  QBuffer buffer;
  QPdfWriter writer{&buffer};
};

TEST_F(SheetTextTest, InCellsACharacterIsAsWideAsItsBytesInTheCodePage) {
  const Typeface japanese = Face("Courier", 932);
  const double cell = japanese.Character();
  EXPECT_EQ(japanese.WidthOf(QStringLiteral("abc"), true), 3 * cell);
  EXPECT_EQ(japanese.WidthOf(QStringLiteral("a漢Ωｱ"), true), (1 + 2 + 2 + 1) * cell);
  EXPECT_EQ(Face("Courier", 1252).WidthOf(QStringLiteral("aµé"), true), 3 * cell);
}

TEST_F(SheetTextTest, OnlyAFixedPitchFontHasCells) {
  EXPECT_TRUE(Face("Courier", 932).InCells(QStringLiteral("漢 a")));
  EXPECT_FALSE(Face("Arial", 932).InCells(QStringLiteral("漢 a")));
}

TEST_F(SheetTextTest, LettersThatRunFromRightToLeftHaveNoCells) {
  EXPECT_FALSE(Face("Courier", 1252).InCells(QStringLiteral("a שלום")));
  EXPECT_FALSE(Face("Courier", 1252).InCells(QStringLiteral("سلام")));
}

TEST_F(SheetTextTest, ACharacterIsMeasuredOnceInAFont) {
  const Typeface face = Face("Courier", 932);
  for (int i = 0; i < 3; ++i) face.WidthOf(QStringLiteral("aab漢漢Ω"), true);
  EXPECT_EQ(face.Measured(), 4);
}

// A line as long as a report may have one: a character is placed once, not once for every page that
// the line goes over.
TEST_F(SheetTextTest, TheLongestLineOfAReportIsLaidOutOnce) {
  for (const char* font : {"Courier", "Arial"}) {
    F1Book sheet;
    sheet.SetText(1, 1, std::string(65533, 'x'));
    sheet.SetSelection(-1, -1, -1, -1);
    sheet.SetFont({font, 9});
    sheet.FitColumnWidths(F1Book::Fit::kSetDefaultToo);
    SheetPainter painter(writer, sheet, {2026, 11, 21, 5, 9, 59}, *CodePage::Find(1252));
    painter.Paint();
    EXPECT_EQ(painter.Placed(), 65533) << font;
  }
}

TEST_F(SheetTextTest, ALineOnOnePageIsNotLookedThroughForItsCharacters) {
  F1Book sheet;
  sheet.SetText(1, 1, "short");
  sheet.SetSelection(-1, -1, -1, -1);
  sheet.FitColumnWidths(F1Book::Fit::kSetDefaultToo);
  SheetPainter painter(writer, sheet, {2026, 11, 21, 5, 9, 59}, *CodePage::Find(1252));
  painter.Paint();
  EXPECT_EQ(painter.Placed(), 0);
}

}  // namespace
}  // namespace logbook
