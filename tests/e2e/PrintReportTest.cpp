// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// "Print" of the viewer: what stands on paper for each kind of report.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <tuple>

#include "CellWatch.h"
#include "PrintShop.h"
#include "PrintedPages.h"

namespace logbook::e2e {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kLog[] = "26010100";

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    line.erase(line.find_last_not_of(' ') + 1);
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> WithoutEmpty(std::vector<std::string> lines) {
  lines.erase(std::remove(lines.begin(), lines.end(), ""), lines.end());
  return lines;
}

class PrintReportTest : public PrintShop {
 protected:
  std::string InLog(const std::string& file) { return kLogRoot + (kLog + ("\\" + file)); }
  std::string Image(const std::string& file) { return std::string(kLog) + "_" + file + ".pdf"; }

  // The rows that the sheet of a report has: its file, two empty rows, the comment below its
  // heading.
  std::vector<std::string> RowsFor(const std::string& file) {
    std::vector<std::string> rows = Lines(work().machine().Get(InLog(file)));
    rows.insert(rows.end(), {"", "", "Comment:"});
    for (const std::string& line : Lines(work().machine().Get(InLog("comment.txt"))))
      rows.push_back(line.substr(0, 70));
    return rows;
  }

  // Presses "Print" and reads what comes.
  std::vector<PrintedPage> Print(ViewerPage& viewer, const std::string& file) {
    NoteMoment();
    viewer.PressPrint();
    pdf_ = WaitForImage(Image(file));
    return ReadPrintedPages(pdf_);
  }

  const std::string& pdf() const { return pdf_; }

 private:
  std::string pdf_;
};

// Expects a dark line just above the heading of the comment, from the left margin on, and none
// above the rows around it.
void ExpectRuleAboveComment(const std::string& pdf, const PrintedPage& page) {
  const auto heading =
      std::find_if(page.words.begin(), page.words.end(),
                   [](const test::PlacedWord& word) { return word.text == "Comment:"; });
  ASSERT_NE(heading, page.words.end());
  const test::Picture picture = test::PictureOf(pdf);
  const int from = static_cast<int>(std::ceil(heading->left)) + 1;
  const int to = static_cast<int>(heading->right) + 40;
  std::vector<int> rules;
  for (int y = 0; y < picture.height; ++y) {
    if (picture.DarkBetween(y, from, to)) rules.push_back(y);
  }
  ASSERT_FALSE(rules.empty()) << "no rule";
  EXPECT_GE(rules.front(), heading->top - 4);
  EXPECT_LE(rules.back(), heading->top + 1) << "it must not strike the text out";
}

TEST_F(PrintReportTest, ValueReportHasItsLinesARuleAndTheCommentCutAtSeventyCharacters) {
  work().RunHost({"fill", "--logs", "1", "--until", "2026-01-01"});
  ASSERT_THAT(work().Logs(), ElementsAre(kLog));
  const std::string seventy =
      "A comment line of exactly seventy characters, which prints to its end.";
  ASSERT_EQ(seventy.size(), 70u);
  work().machine().Put(InLog("comment.txt"),
                       seventy + "\r\n" + seventy + "!\r\n\r\nfourth line\r\n");
  Start();
  ViewerPage viewer = View(kLog);
  viewer.Choose({"alt+v"});
  const auto pages = Print(viewer, "meter.rpt");
  ExpectMargins(pages, "Meter Values", from(), std::time(nullptr));
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_LT(pages[0].width, pages[0].height) << "upright";
  EXPECT_EQ(pages[0].body, RowsFor("meter.rpt"));
  EXPECT_THAT(pages[0].body, testing::Contains("fourth line"));
  ExpectRuleAboveComment(pdf(), pages[0]);
  ExpectFontsEmbedded(pdf());
  EXPECT_THAT(Images(), ElementsAre(Image("meter.rpt")));
}

TEST_F(PrintReportTest, LogThatIsCutOnTheScreenIsWholeOnPaperAndEveryPageTellsItsNumber) {
  work().PutPlainLogs(1);
  std::string text;
  constexpr int kLines = 1700;
  for (int i = 1; i <= kLines; ++i)
    text += "error " + std::to_string(i) + " of the interface vacuum system\r\n";
  ASSERT_GT(text.size(), 65536u);
  work().machine().Put(InLog("errlog.txt"), text);
  Start();
  ViewerPage viewer = View(kLog);
  viewer.Choose({"alt+l", "e"});
  MessagePage(desktop(), main()).OK();
  viewer.WaitForReport(reader(), "error 1 of");
  const auto pages = Print(viewer, "errlog.txt");
  EXPECT_GT(pages.size(), 20u);
  ExpectMargins(pages, "Error Log", from(), std::time(nullptr));
  EXPECT_EQ(WithoutEmpty(RowsOf(pages)), WithoutEmpty(RowsFor("errlog.txt")));
}

// Every byte value stands in these files, and lines of any length.
TEST_F(PrintReportTest, LogsThatAreNoTextPrintAllTheSame) {
  work().RunHost({"fill", "--logs", "1", "--until", "2026-01-01", "--broken", "binary",
                  "--log-kilobytes", "63"});
  Start();
  ViewerPage viewer = View(kLog);
  for (const auto& [key, file, title] : {std::tuple("a", "acqlog.txt", "Acquisition Log"),
                                         {"s", "sequence.log", "Sequence Log"},
                                         {"c", "chnseq.log", "Chained Sequence Log"},
                                         {"e", "errlog.txt", "Error Log"}}) {
    ASSERT_GE(work().machine().Get(InLog(file)).size(), 20000u);
    viewer.Choose({"alt+l", key});
    const auto pages = Print(viewer, file);
    ASSERT_GT(pages.size(), 1u) << file;
    EXPECT_EQ(pages[0].header, title);
    EXPECT_THAT(RowsOf(pages), testing::Contains("Comment:")) << file;
  }
  desktop().WaitForWindow(viewer.title());
}

TEST_F(PrintReportTest, SequenceLogLiesOnItsSideAndLinesWiderThanThePaperGoOnWithoutLoss) {
  work().PutPlainLogs(1);
  std::string wide;
  for (int i = 0; wide.size() < 200; ++i) wide += "vial" + std::to_string(i) + ";";
  work().machine().Put(InLog("sequence.log"), "Sequence Log\r\n" + wide + "\r\n");
  Start();
  ViewerPage viewer = View(kLog);
  viewer.Choose({"alt+l", "s"});
  viewer.WaitForReport(reader(), "Sequence Log");
  const auto pages = Print(viewer, "sequence.log");
  ExpectMargins(pages, "Sequence Log", from(), std::time(nullptr));
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_GT(pages[0].width, pages[0].height) << "landscape";
  EXPECT_EQ(pages[0].body.at(1) + pages[1].body.at(1), wide);
  EXPECT_THAT(pages[0].body, testing::Contains("Comment:"));
}

TEST_F(PrintReportTest, MaintenanceRecordsPrintTheSentencesOfTheTicksThatWereSet) {
  work().PutPlainLogs(1);
  const std::string profile = InLog("logfile.ini");
  work().machine().Put(profile, work().machine().Get(profile) +
                                    "[Maintenance]\r\nItem0=1\r\nItem1=0\r\nItem2=1\r\n");
  Start();
  ViewerPage viewer = View(kLog);
  viewer.Choose({"alt+m"});
  const auto pages = Print(viewer, "mainte.rpt");
  ExpectMargins(pages, "Maintenance Records", from(), std::time(nullptr));
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_EQ(pages[0].body, RowsFor("mainte.rpt"));
  // Two sentences, the empty line that ends the file, two empty rows, heading and comment.
  EXPECT_EQ(pages[0].body.size(), 7u);
  ExpectRuleAboveComment(pdf(), pages[0]);
}

TEST_F(PrintReportTest, TuneReportIsPrintedByTheHostAndLeavesNoImage) {
  CellWatch cell(desktop());
  work().RunHost({"fill", "--logs", "1", "--until", "2026-01-01"});
  Start();
  ViewerPage viewer = View(kLog);
  viewer.Choose({"alt+t"});
  viewer.PressPrint();
  const std::string paper = "C:\\QUOREX\\tuneprint\\" + std::string(kLog) + ".txt";
  WaitFor("the host's printout", [&] { return work().machine().Has(paper); });
  WaitFor("the host's answer", [&] { return cell.Heard().size() >= 2; });
  EXPECT_THAT(cell.Heard(), ElementsAre("2", "0"));
  EXPECT_THAT(Images(), IsEmpty());
}

TEST_F(PrintReportTest, NothingChosenPrintsNothingAndAfterTheCloseBoxThePrintGoesByTheOldChoice) {
  work().PutPlainLogs(1);
  Start();
  ViewerPage viewer = View(kLog);
  viewer.PressPrint();
  viewer.Choose({"alt+m"});
  Print(viewer, "mainte.rpt");
  EXPECT_THAT(Images(), ElementsAre(Image("mainte.rpt"))) << "the first press printed";

  desktop().Key("alt+F4");
  desktop().WaitUntilGone(viewer.window());
  std::remove(work().machine().Native(InLog("mainte.rpt")).c_str());
  const std::string older = work().machine().Get(kPdfFolder + Image("mainte.rpt"));
  ViewerPage again = ViewAgain(kLog);
  again.PressPrint();
  const auto pages = ReadPrintedPages(WaitForImage(Image("mainte.rpt"), older));
  EXPECT_EQ(pages.at(0).header, "Maintenance Records");
  EXPECT_THAT(WithoutEmpty(RowsOf(pages)), ElementsAre("Comment:", "Log 1"));

  again.PressExit();
  desktop().WaitUntilGone(again.window());
  ViewerPage fresh = ViewAgain(kLog);
  const std::string last = work().machine().Get(kPdfFolder + Image("mainte.rpt"));
  fresh.PressPrint();
  fresh.PressExit();
  desktop().WaitUntilGone(fresh.window());
  EXPECT_EQ(work().machine().Get(kPdfFolder + Image("mainte.rpt")), last);
}

TEST_F(PrintReportTest, FailedPrintIsToldAndTheViewerComesBack) {
  work().PutPlainLogs(1);
  SetPrinter("Nowhere");
  Start();
  ViewerPage viewer = View(kLog);
  viewer.Choose({"alt+m"});
  viewer.PressPrint();
  const char* text = "The default printer named in the settings is not installed.";
  const WindowId untitled = desktop().WaitForWindow(" ");
  reader().WaitFor("label", text);
  desktop().Key("Return");
  desktop().WaitUntilGone(untitled);
  // The print itself fails too, under the program's title.
  MessagePage box(desktop(), main());
  reader().WaitFor("label", text);
  box.OK();
  EXPECT_EQ(desktop().WaitForWindow(viewer.title()), viewer.window());
  viewer.PressExit();
  desktop().WaitUntilGone(viewer.window());
}

}  // namespace
}  // namespace logbook::e2e
