// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SheetPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QFontMetrics>
#include <QStringList>
#include <algorithm>

#include "support/PdfTools.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

using test::LinesOf;
using test::PlacedWord;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const LocalTime kNow{2026, 11, 21, 5, 9, 59};

// A sheet with the settings of the reports.
class SheetPrinting : public testing::Test {
 protected:
  void SetUp() override {
    SKIP_WITHOUT_PDF_TOOLS();
    sheet.SetTitle("Maintenance LogBook");
    sheet.SetSheetName("Error Log");
    sheet.SetSelection(-1, -1, -1, -1);
    sheet.SetFont({"Courier", 9});
    sheet.SetDefaultFont("Courier", 9);
    sheet.SetPageHeader("&\"Courier\"&9&A");
    sheet.SetPageFooter("&R&\"Courier\"&9&D &T&C&\"Courier\"&9Page &P/&N");
    sheet.FitColumnWidths(F1Book::Fit::kSetDefaultToo);
  }

  // Prints the sheet and returns the native path of the PDF file.
  std::string Print() {
    const QByteArray bytes =
        SheetAsPdf(sheet, kNow, QPageSize(QPageSize::A4), *CodePage::Find(code_page));
    disk.Put("C:\\sheet.pdf", {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return disk.Native("C:\\sheet.pdf");
  }

  test::TestMachine disk;
  F1Book sheet;
  int code_page = 1252;
};

std::vector<std::string> Texts(const std::vector<PlacedWord>& words, int page) {
  std::vector<std::string> texts;
  for (const PlacedWord& word : words) {
    if (word.page == page) texts.push_back(word.text);
  }
  return texts;
}

PlacedWord Find(const std::vector<PlacedWord>& words, const std::string& text) {
  const auto found = std::find_if(words.begin(), words.end(),
                                  [&](const PlacedWord& word) { return word.text == text; });
  if (found != words.end()) return *found;
  ADD_FAILURE() << "no word " << text;
  return {};
}

bool FontHas(char32_t character) {
  for (const QString& family : QFontDatabase::families()) {
    if (QFontMetrics(QFont(family)).inFontUcs4(character)) return true;
  }
  return false;
}

TEST_F(SheetPrinting, ThePageHasTheSheetsNameOnTopAndPageDateAndTimeBelow) {
  sheet.SetText(1, 1, "body");
  const std::vector<PlacedWord> words = test::WordsOf(Print());
  EXPECT_THAT(Texts(words, 1),
              ElementsAre("Error", "Log", "body", "Page", "1/1", "21", "Nov", "2026", "05:09:59"));
  EXPECT_NEAR((Find(words, "Error").left + Find(words, "Log").right) / 2, 595 / 2.0, 3);
  EXPECT_NEAR((Find(words, "Page").left + Find(words, "1/1").right) / 2, 595 / 2.0, 3);
  EXPECT_NEAR(Find(words, "05:09:59").right, 595 - 54, 2) << "the right margin";
  EXPECT_NEAR(Find(words, "Error").top, 36, 4);
  EXPECT_NEAR(Find(words, "1/1").bottom, 842 - 36, 4);
  EXPECT_NEAR(Find(words, "body").left, 54, 2);
  EXPECT_NEAR(Find(words, "body").top, 72, 4);
}

TEST_F(SheetPrinting, FontsAreEmbedded) {
  sheet.SetText(1, 1, "body");
  const std::string pdf = Print();
  EXPECT_THAT(test::FontsOf(pdf), Not(IsEmpty()));
  EXPECT_THAT(test::FontsOf(pdf), Each(Field(&test::PdfFont::embedded, true)));
}

TEST_F(SheetPrinting, TheDocumentBearsTheBooksTitle) {
  sheet.SetText(1, 1, "body");
  EXPECT_THAT(test::OutputOf("pdfinfo '" + Print() + "'"), HasSubstr("Maintenance LogBook"));
}

TEST_F(SheetPrinting, CellsStandInNinePointFixedPitch) {
  sheet.SetText(1, 1, "0123456789");
  const PlacedWord word = Find(test::WordsOf(Print()), "0123456789");
  EXPECT_NEAR(word.right - word.left, 10 * 9 * 0.6, 0.5);
}

TEST_F(SheetPrinting, HeaderAndFooterWithoutAFontOfTheirOwnStandInTheSheetsDefaultFont) {
  sheet.SetDefaultFont("Courier", 20);
  sheet.SetPageHeader("0123456789");
  sheet.SetPageFooter("&9abcdefghij");
  const std::vector<PlacedWord> words = test::WordsOf(Print());
  const PlacedWord header = Find(words, "0123456789"), footer = Find(words, "abcdefghij");
  EXPECT_NEAR(header.right - header.left, 10 * 20 * 0.6, 0.5);
  EXPECT_NEAR(footer.right - footer.left, 10 * 9 * 0.6, 0.5);
}

TEST_F(SheetPrinting, AColumnThatIsNotFittedIsNineCharactersOfTheDefaultFontWide) {
  F1Book plain;
  plain.SetDefaultFont("Courier", 20);
  plain.SetSelection(-1, -1, -1, -1);
  plain.SetFont({"Courier", 9});
  plain.SetText(1, 1, "a");
  plain.SetText(1, 2, "b");
  sheet = plain;
  const std::vector<PlacedWord> words = test::WordsOf(Print());
  EXPECT_NEAR(Find(words, "b").left - Find(words, "a").left, 9 * 20 * 0.6, 0.5);
}

TEST_F(SheetPrinting, AnEmptySheetIsOnePageWithHeaderAndFooter) {
  EXPECT_THAT(Texts(test::WordsOf(Print()), 1),
              ElementsAre("Error", "Log", "Page", "1/1", "21", "Nov", "2026", "05:09:59"));
}

TEST_F(SheetPrinting, RowsGoOnOverThePagesWithoutLossAndEachPageSaysWhichItIs) {
  for (int row = 1; row <= 170; ++row) sheet.SetText(row, 1, "line " + std::to_string(row));
  const std::vector<std::string> pages = test::PagesOf(Print());
  ASSERT_EQ(pages.size(), 3u);
  std::string all;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    EXPECT_THAT(pages[i], HasSubstr("Error Log"));
    EXPECT_THAT(pages[i], HasSubstr("Page " + std::to_string(i + 1) + "/3"));
    all += pages[i] + "\n";
  }
  std::size_t at = 0;
  for (int row = 1; row <= 170; ++row) {
    at = all.find("line " + std::to_string(row) + "\n", at);
    ASSERT_NE(at, std::string::npos) << row;
  }
}

TEST_F(SheetPrinting, EmptyRowsKeepTheirPlace) {
  sheet.SetText(1, 1, "first");
  sheet.SetText(4, 1, "fourth");
  const std::vector<PlacedWord> words = test::WordsOf(Print());
  const double row_height = (Find(words, "fourth").top - Find(words, "first").top) / 3;
  EXPECT_NEAR(row_height, 11.7, 0.4);
}

TEST_F(SheetPrinting, ATopBorderIsARuleAcrossTheColumnAboveItsRow) {
  if (!test::HasTool("pdftoppm")) GTEST_SKIP() << "pdftoppm is not installed";
  sheet.SetText(1, 1, std::string(40, 'x'));
  sheet.SetText(4, 1, "Comment:");
  sheet.SetSelection(4, 1, 4, 1);
  sheet.SetBorder({.Top = SheetEdge{4}});
  const std::string pdf = Print();
  const PlacedWord word = Find(test::WordsOf(pdf), "Comment:");
  const test::Picture page = test::PictureOf(pdf);
  int rule = -1;
  for (int y = static_cast<int>(word.top) - 4; y < word.bottom; ++y) {
    if (page.DarkBetween(y, 56, 54 + 38 * 5)) rule = y;
  }
  ASSERT_GE(rule, 0) << "no line of dark dots";
  EXPECT_LE(rule, word.top + 1) << "the rule must not strike the text out";
  EXPECT_FALSE(page.DarkBetween(rule, 56, 54 + 45 * 5)) << "no wider than the column";
}

TEST_F(SheetPrinting, LandscapeTurnsThePaper) {
  sheet.SetText(1, 1, "body");
  test::PaperSize paper = test::PaperOf(Print());
  EXPECT_LT(paper.width, paper.height);
  sheet.SetLandscape(true);
  const std::string pdf = Print();
  paper = test::PaperOf(pdf);
  EXPECT_GT(paper.width, paper.height);
  EXPECT_NEAR(Find(test::WordsOf(pdf), "05:09:59").right, 842 - 54, 2);
}

TEST_F(SheetPrinting, ColumnsAreAsWideAsTheirLongestTextAndOneCharacter) {
  sheet.SetText(1, 1, "a");
  sheet.SetText(2, 1, "wider");
  sheet.SetText(1, 2, "second");
  sheet.SetText(2, 3, "third");
  const std::vector<PlacedWord> words = test::WordsOf(Print());
  const double character = 9 * 0.6;
  EXPECT_NEAR(Find(words, "second").left, 54 + 6 * character, 1);
  EXPECT_NEAR(Find(words, "third").left, 54 + (6 + 7) * character, 1);
}

TEST_F(SheetPrinting, ColumnsThatDoNotFitGoToPagesOfTheirOwn) {
  for (int column = 1; column <= 3; ++column) {
    for (int row = 1; row <= 100; ++row)
      sheet.SetText(row, column,
                    std::string(38, static_cast<char>('a' + column - 1)) + std::to_string(row));
  }
  const std::vector<std::string> pages = test::PagesOf(Print());
  ASSERT_EQ(pages.size(), 4u) << "two pages down, two across";
  EXPECT_THAT(pages[0], AllOf(HasSubstr("aa1"), HasSubstr("bb1"), Not(HasSubstr("cc"))));
  EXPECT_THAT(pages[1], AllOf(HasSubstr("aa100"), HasSubstr("bb100"), Not(HasSubstr("cc"))));
  EXPECT_THAT(pages[2], AllOf(HasSubstr("cc1"), Not(HasSubstr("aa")), HasSubstr("Page 3/4")));
  EXPECT_THAT(pages[3], HasSubstr("cc100"));
}

TEST_F(SheetPrinting, PagesOfFurtherColumnsAreLeftOutAndNotCountedWhereNoTextStands) {
  for (int row = 1; row <= 170; ++row) sheet.SetText(row, 1, "short");
  sheet.SetText(100, 1, std::string(90, '-') + std::string(90, '='));
  const std::vector<std::string> pages = test::PagesOf(Print());
  ASSERT_EQ(pages.size(), 4u) << "three down, and one beside the second";
  for (std::size_t i = 0; i < pages.size(); ++i)
    EXPECT_THAT(pages[i], HasSubstr("Page " + std::to_string(i + 1) + "/4"));
  EXPECT_THAT(pages[2], HasSubstr("short"));
  EXPECT_THAT(pages[3], AllOf(HasSubstr("==="), Not(HasSubstr("short"))));
}

TEST_F(SheetPrinting, PagesOfTheFirstColumnsArePrintedThoughTheyAreEmpty) {
  sheet.SetText(170, 1, "last");
  const std::vector<std::string> pages = test::PagesOf(Print());
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_THAT(pages[0], AllOf(HasSubstr("Page 1/3"), Not(HasSubstr("last"))));
}

TEST_F(SheetPrinting, TitleRowStandsOnTheFirstPageAlone) {
  sheet.SetText(1, 1, "Date Logged");
  for (int row = 2; row <= 170; ++row) sheet.SetText(row, 1, "row");
  const std::vector<std::string> pages = test::PagesOf(Print());
  ASSERT_EQ(pages.size(), 3u);
  EXPECT_THAT(pages[0], HasSubstr("Date Logged"));
  EXPECT_THAT(pages[1], Not(HasSubstr("Date Logged")));
  EXPECT_THAT(pages[2], Not(HasSubstr("Date Logged")));
}

TEST_F(SheetPrinting, ALineWiderThanThePageGoesOnToTheNextWithoutLoss) {
  std::string line;
  for (int i = 0; line.size() < 200; ++i) line += std::to_string(i) + ",";
  sheet.SetText(1, 1, line);
  sheet.SetText(2, 1, "short");
  const std::vector<std::string> pages = test::PagesOf(Print());
  ASSERT_EQ(pages.size(), 3u);
  std::string all;
  for (const std::string& page : pages) {
    for (const std::string& text : LinesOf(page)) {
      if (text.find(',') != std::string::npos) all += text;
    }
  }
  EXPECT_EQ(all, line);
  EXPECT_THAT(pages[0], HasSubstr("short"));
  EXPECT_THAT(pages[1], Not(HasSubstr("short")));
}

TEST_F(SheetPrinting, TheLongestLineOfAReportGoesOnOverItsPagesWithoutLoss) {
  std::string line;
  for (int i = 0; line.size() < 65533; ++i) line += std::to_string(i) + ",";
  line.resize(65533);
  sheet.SetText(1, 1, line);
  std::string all;
  for (const std::string& page : test::PagesOf(Print())) {
    for (const std::string& text : LinesOf(page)) {
      if (text.find(',') != std::string::npos) all += text;
    }
  }
  EXPECT_TRUE(all == line) << all.size() << " of " << line.size();
}

TEST_F(SheetPrinting, BytesThatAreNoTextPrintAndLeaveTheRowsBehindThemInPlace) {
  for (const int number : {932, 1252}) {
    code_page = number;
    std::string bytes;
    for (int i = 0; i < 4000; ++i) bytes += static_cast<char>(i * 7919 % 65521 % 256);
    for (int row = 1; row <= 20; ++row) {
      const std::string line = bytes.substr(static_cast<std::size_t>(row) * 100, 40);
      sheet.SetText(row, 1, CodePage::Find(code_page)->ToUtf8(line));
    }
    sheet.SetText(21, 1, "behind");
    const PlacedWord behind = Find(test::WordsOf(Print()), "behind");
    EXPECT_NEAR(behind.left, 54, 2) << number;
    EXPECT_EQ(behind.page, 1) << number;
  }
}

// Labels and values as the reports have them, the values in column 20 of the code page's bytes.
TEST_F(SheetPrinting, ColumnsCountedInBytesStandInColumnsUnderADoubleBytePage) {
  code_page = 932;
  const std::string labels[] = {"Carrier gas", "\u03a9\u03bc\u00b0", "\u65e5\u4ed8",
                                "\uff8c\uff9f\uff97\uff7d\uff9e\uff8f", "a\u6f22b"};
  int row = 0;
  for (const std::string& label : labels) {
    const std::size_t width = CodePage::Find(code_page)->Length(label);
    ++row;
    sheet.SetText(row, 1, label + std::string(20 - width, ' ') + "value" + std::to_string(row));
  }
  const std::vector<PlacedWord> words = test::WordsOf(Print());
  for (row = 1; row <= 5; ++row) {
    const PlacedWord value = Find(words, "value" + std::to_string(row));
    EXPECT_NEAR(value.left, 54 + 20 * 9 * 0.6, 0.2) << labels[row - 1];
  }
}

TEST_F(SheetPrinting, ADoubleByteTextStaysOneWordForThoseWhoSearchIt) {
  if (!FontHas(0x6F22)) GTEST_SKIP() << "no font with Japanese characters is installed";
  code_page = 932;
  sheet.SetText(1, 1, "\u6f22\u5b57\u6f22\u5b57");
  const PlacedWord word = Find(test::WordsOf(Print()), "\u6f22\u5b57\u6f22\u5b57");
  EXPECT_NEAR(word.right - word.left, 8 * 9 * 0.6, 0.2);
}

TEST_F(SheetPrinting, AColumnIsFittedToTheBytesOfItsTexts) {
  code_page = 932;
  sheet.SetText(1, 1, "\u03a9\u03a9\u03a9");
  sheet.SetText(1, 2, "second");
  EXPECT_NEAR(Find(test::WordsOf(Print()), "second").left, 54 + 7 * 9 * 0.6, 0.2);
}

TEST_F(SheetPrinting, TabsReachToTheNextMultipleOfEight) {
  const CodePage& western = *CodePage::Find(1252);
  EXPECT_EQ(PrintableText("a\tb\t\tc", western), QStringLiteral("a       b               c"));
  EXPECT_EQ(PrintableText("12345678\tx", western), QStringLiteral("12345678        x"));
}

TEST_F(SheetPrinting, TabsCountBytesOfTheCodePage) {
  EXPECT_EQ(PrintableText("\u6f22\u5b57\tx", *CodePage::Find(932)), QStringLiteral("漢字    x"));
  EXPECT_EQ(PrintableText("\u00e9\u00e9\tx", *CodePage::Find(1252)), QStringLiteral("éé      x"));
}

TEST_F(SheetPrinting, OtherControlCharactersPrintNothing) {
  EXPECT_EQ(PrintableText(std::string("a\0b\fc\x1b"
                                      "d\te",
                                      9),
                          *CodePage::Find(1252)),
            QStringLiteral("abcd    e"));
}

TEST_F(SheetPrinting, DateAndTimeAreInTheMannerOfTheLocaleWithAllDigitsOfTheYear) {
  struct Row {
    const char* locale;
    const char* date;
    const char* time;
  };
  const Row rows[] = {{"C", "21 Nov 2026", "05:09:59"},
                      {"en_US", "11/21/2026", "5:09"},
                      {"de_DE", "21.11.2026", "05:09"},
                      {"ja_JP", "2026/11/21", "5:09"}};
  for (const Row& row : rows) {
    const QLocale locale{QString::fromLatin1(row.locale)};
    EXPECT_EQ(PrintDate(kNow, locale).toStdString(), row.date) << row.locale;
    EXPECT_THAT(PrintTime(kNow, locale).toStdString(), StartsWith(row.time)) << row.locale;
  }
}

TEST_F(SheetPrinting, TextBeyondTheLatinLettersPrints) {
  sheet.SetText(1, 1, "caf\xc3\xa9 \xc2\xb5g \xd0\x96 \xce\xa9");
  EXPECT_THAT(test::PagesOf(Print())[0], HasSubstr("caf\xc3\xa9 \xc2\xb5g \xd0\x96 \xce\xa9"));
}

TEST_F(SheetPrinting, AnUnknownFixedPitchFontStandsForAnEmbeddableOneOfItsWidths) {
  const QFont font = PrintFont({"Courier", 9});
  EXPECT_EQ(font.pointSizeF(), 9);
  EXPECT_THAT(font.families().join(QLatin1Char(',')).toStdString(), HasSubstr("Liberation Mono"));
  EXPECT_TRUE(font.fixedPitch());
}

}  // namespace
}  // namespace logbook
