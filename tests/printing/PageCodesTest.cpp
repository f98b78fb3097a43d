// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/PageCodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace logbook {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const PageFacts kFacts{"Error Log", 2, 7, "21/11/2026", "05:09"};

PageText Expand(std::string_view codes) {
  return ExpandPageCodes(codes, kFacts);
}

std::string CentreText(std::string_view codes) {
  std::string text;
  for (const PageRun& run : Expand(codes).Centre) text += run.Text;
  return text;
}

TEST(PageCodes, TextStandsInTheCentreUntilACodeSaysOtherwise) {
  const PageText page = Expand("one&Ltwo&Rthree&Cfour");
  EXPECT_THAT(page.Centre, ElementsAre(PageRun{"onefour", {}, {}}));
  EXPECT_THAT(page.Left, ElementsAre(PageRun{"two", {}, {}}));
  EXPECT_THAT(page.Right, ElementsAre(PageRun{"three", {}, {}}));
}

TEST(PageCodes, EachFactHasItsCode) {
  EXPECT_EQ(CentreText("&A|&P|&N|&D|&T"), "Error Log|2|7|21/11/2026|05:09");
}

TEST(PageCodes, TheHeaderOfReportsIsTheSheetsNameInItsFont) {
  const PageText page = Expand("&\"Courier\"&9&A");
  EXPECT_THAT(page.Centre, ElementsAre(PageRun{"Error Log", "Courier", 9}));
  EXPECT_THAT(page.Left, IsEmpty());
  EXPECT_THAT(page.Right, IsEmpty());
}

TEST(PageCodes, TheFooterOfReportsHasDateAndTimeAtTheRightAndThePageInTheCentre) {
  const PageText page = Expand("&R&\"Courier\"&9&D &T&C&\"Courier\"&9Page &P/&N");
  EXPECT_THAT(page.Right, ElementsAre(PageRun{"21/11/2026 05:09", "Courier", 9}));
  EXPECT_THAT(page.Centre, ElementsAre(PageRun{"Page 2/7", "Courier", 9}));
  EXPECT_THAT(page.Left, IsEmpty());
}

TEST(PageCodes, FontAndSizeHoldForTheRestOfThePart) {
  const PageText page = Expand("a&\"Arial\"b&12c&Ld&Ce");
  EXPECT_THAT(page.Centre, ElementsAre(PageRun{"a", {}, {}}, PageRun{"b", "Arial", {}},
                                       PageRun{"c", "Arial", 12}, PageRun{"e", {}, {}}));
  EXPECT_THAT(page.Left, ElementsAre(PageRun{"d", {}, {}}));
}

TEST(PageCodes, ASizeTakesAllDigitsThatFollow) {
  EXPECT_THAT(Expand("&12a").Centre, ElementsAre(PageRun{"a", {}, 12}));
  EXPECT_THAT(Expand("&0a").Centre, ElementsAre(PageRun{"a", {}, {}}));
  EXPECT_THAT(Expand("&99999999999a").Centre, ElementsAre(PageRun{"a", {}, 999}));
}

TEST(PageCodes, TwoAmpersandsPrintOne) {
  EXPECT_EQ(CentreText("R&&D"), "R&D");
  EXPECT_EQ(CentreText("&&P"), "&P");
  EXPECT_EQ(CentreText("&&&P"), "&2");
}

TEST(PageCodes, ACodeThatTheLanguageDoesNotKnowPrintsNothing) {
  for (const char* codes : {"a&Zb", "a&pb", "a& b", "a&%b", "a&\nb"})
    EXPECT_EQ(CentreText(codes), "ab") << codes;
}

TEST(PageCodes, AnAmpersandAtTheEndPrintsNothing) {
  EXPECT_EQ(CentreText("a&"), "a");
  EXPECT_EQ(CentreText("&"), "");
  EXPECT_EQ(CentreText("&&&"), "&");
}

TEST(PageCodes, AFontNameWithoutItsSecondQuoteTakesTheRestAndPrintsNothing) {
  EXPECT_EQ(CentreText("a&\"Courier&9&A"), "a");
  EXPECT_EQ(CentreText("a&\""), "a");
  EXPECT_THAT(Expand("&\"\"a").Centre, ElementsAre(PageRun{"a", {}, {}}));
}

TEST(PageCodes, FactsAreNotReadAsCodes) {
  const PageText page = ExpandPageCodes("&A", {"Q&A & &P", 1, 1, "", ""});
  EXPECT_THAT(page.Centre, ElementsAre(PageRun{"Q&A & &P", {}, {}}));
}

TEST(PageCodes, AnEmptyTextGivesEmptyParts) {
  const PageText page = Expand("");
  EXPECT_THAT(page.Left, IsEmpty());
  EXPECT_THAT(page.Centre, IsEmpty());
  EXPECT_THAT(page.Right, IsEmpty());
}

}  // namespace
}  // namespace logbook
