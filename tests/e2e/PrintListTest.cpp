// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// "Print List" of the main window, as a PDF file and on a queue of a real print system.

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "CellWatch.h"
#include "PrintShop.h"
#include "PrintedPages.h"
#include "support/PrivateCups.h"

namespace logbook::e2e {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Button = MainPage::Button;

constexpr std::size_t kColumns = 9, kCommentCharacters = 20;
constexpr char kListImage[] = "Logbook_List.pdf";
constexpr char kListSheet[] = "List View";

using Cells = std::array<std::u32string, kColumns>;

std::u32string Decoded(const std::string& text) {
  return QString::fromStdString(text).toStdU32String();
}

// The cells of listlog.csv, which is the list; the comment is cut as on paper. Commas of its own
// belong to the comment.
std::vector<Cells> CellsOf(const Workplace& work) {
  const std::string list = work.machine().Get(kLogRoot + std::string("listlog.csv"));
  std::istringstream lines(work.machine().machine().code_page->ToUtf8(list));
  std::vector<Cells> rows;
  for (std::string line; std::getline(lines, line);) {
    line.pop_back();  // carriage return
    std::istringstream fields(line);
    std::string text;
    Cells& cells = rows.emplace_back();
    for (std::size_t i = 0; i + 1 < kColumns; ++i) {
      std::getline(fields, text, ',');
      cells[i] = Decoded(text);
    }
    std::getline(fields, text);
    cells.back() =
        Decoded(text).substr(0, rows.size() == 1 ? std::string::npos : kCommentCharacters);
  }
  return rows;
}

// As many characters as stand side by side on a page of A4 in landscape.
constexpr std::size_t kCharactersAcross = 135;

std::string WithoutBlanksAtEnd(const std::u32string& row) {
  return QString::fromStdU32String(row.substr(0, row.find_last_not_of(U' ') + 1)).toStdString();
}

// The rows as they stand on paper: columns as wide as their longest cell and a blank between, and
// those that do not fit below all rows of the others.
std::vector<std::string> RowsOnPaper(const std::vector<Cells>& list) {
  std::array<std::size_t, kColumns> widths{};
  for (const Cells& cells : list) {
    for (std::size_t i = 0; i < kColumns; ++i)
      widths[i] = std::max(widths[i], cells[i].size() + (i + 1 < kColumns ? 1 : 0));
  }
  std::vector<std::string> rows;
  for (std::size_t begin = 0, end = 0; begin < kColumns; begin = end) {
    for (std::size_t width = 0; end < kColumns && width + widths[end] <= kCharactersAcross; ++end)
      width += widths[end];
    for (const Cells& cells : list) {
      std::u32string row;
      for (std::size_t i = begin; i < end; ++i)
        row += cells[i] + std::u32string(widths[i] - cells[i].size(), U' ');
      rows.push_back(WithoutBlanksAtEnd(row));
    }
  }
  return rows;
}

class PrintListTest : public PrintShop {
 protected:
  // All columns then fit on one page.
  void ChooseNoColumns() {
    std::remove(work().machine().Native(kExePath + std::string("logbook.ini")).c_str());
  }
};

TEST_F(PrintListTest, EveryRowStandsInTheImageWithAllItsColumnsAndItsCommentIsCut) {
  work().RunHost({"fill", "--logs", "60", "--until", "2026-06-30"});
  Start();
  NoteMoment();
  main().Press(Button::kPrint);
  const std::string pdf = WaitForImage(kListImage);
  const auto pages = ReadPrintedPages(pdf);
  ExpectMargins(pages, kListSheet, from(), std::time(nullptr));
  const auto list = CellsOf(work());
  EXPECT_EQ(list.size(), 61u);
  EXPECT_EQ(RowsOf(pages), RowsOnPaper(list));
  EXPECT_EQ(pages.size(), 4u) << "two down, two across";
  EXPECT_GT(pages.at(0).width, pages.at(0).height) << "landscape";
  ExpectFontsEmbedded(pdf);
  EXPECT_THAT(Images(), ElementsAre(kListImage));
}

TEST_F(PrintListTest, SecondPrintReplacesTheImageInOneStepAndHoldsTheListOfThatMoment) {
  ChooseNoColumns();
  work().PutPlainLogs(3);
  const std::string old(100000, 'x');
  work().machine().Put(kPdfFolder + std::string(kListImage), old);
  Start();
  main().Press(Button::kPrint);
  const std::string pdf = WaitForImage(kListImage, old);
  EXPECT_EQ(RowsOf(ReadPrintedPages(pdf)).size(), 4u);
  const std::string first = work().machine().Get(kPdfFolder + std::string(kListImage));

  ClickRow("26010200");
  main().Press(Button::kDelete);
  MessagePage(desktop(), main()).Yes();
  WaitForButton("Print List");
  WaitFor("the list to be rewritten", [&] { return CellsOf(work()).size() == 3; });
  main().Press(Button::kPrint);
  WaitForImage(kListImage, first);
  EXPECT_EQ(RowsOf(ReadPrintedPages(pdf)), RowsOnPaper(CellsOf(work())));
  EXPECT_THAT(Images(), ElementsAre(kListImage));
}

TEST_F(PrintListTest, EmptyListPrintsItsTitlesAlone) {
  ChooseNoColumns();
  Start();
  NoteMoment();
  main().Press(Button::kPrint);
  const auto pages = ReadPrintedPages(WaitForImage(kListImage));
  ExpectMargins(pages, kListSheet, from(), std::time(nullptr));
  const auto rows = RowsOf(pages);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows, RowsOnPaper(CellsOf(work())));
  EXPECT_THAT(rows[0], testing::StartsWith("Date Logged"));
}

TEST_F(PrintListTest, UnknownPrinterIsReportedUnderAnEmptyTitleAndTheLogbookGoesOn) {
  work().PutPlainLogs(1);
  SetPrinter("Nowhere");
  Start();
  main().Press(Button::kPrint);
  reader().WaitFor("label", "The default printer named in the settings is not installed.");
  const WindowId box = desktop().WaitForWindow(" ");
  desktop().TakePicture(PictureFolder() + "/unknown-printer.png");
  desktop().Key("Return");
  desktop().WaitUntilGone(box);
  EXPECT_EQ(desktop().WaitForWindow(kMainTitle), main().window());
  EXPECT_THAT(Images(), IsEmpty());
  SetPrinter("PDF");
  main().Press(Button::kPrint);
  WaitForImage(kListImage);
}

class PrintOnQueueTest : public PrintShop {
 protected:
  void SetUp() override {
    const std::string missing = test::PrivateCups::Missing();
    if (!missing.empty()) GTEST_SKIP() << missing << " is not installed";
    cups_ = std::make_unique<test::PrivateCups>();
    cups_->AddQueue("Office");
    cups_->SetDefault("Office");
    PrintShop::SetUp();
    if (!IsSkipped()) SetPrinter("");
  }
  void TearDown() override {
    PrintShop::TearDown();
    cups_.reset();
  }

  test::PrivateCups& cups() { return *cups_; }
  std::string WaitForPaper() {
    const std::string document = cups().PrintedBy("Office");
    WaitFor("the queue to print", [&] { return std::filesystem::exists(document); });
    return document;
  }

 private:
  std::unique_ptr<test::PrivateCups> cups_;
};

TEST_F(PrintOnQueueTest, LibrariesOfPrintSystemArchivesAndPicturesWaitUntilTheyAreNeeded) {
  CellWatch cell(desktop());
  work().PutPlainLogs(1);
  Start();
  Row("26010100");
  const auto loaded = [&](const std::string& library) {
    std::ifstream in("/proc/" + std::to_string(cell.Owner()) + "/maps");
    const std::string maps{std::istreambuf_iterator<char>(in), {}};
    EXPECT_THAT(maps, testing::HasSubstr("/libQt6Widgets.so"));
    return maps.find("/" + library + ".so") != std::string::npos;
  };
  EXPECT_FALSE(loaded("libcups"));
  EXPECT_FALSE(loaded("libzip"));
  EXPECT_FALSE(loaded("libjpeg"));
  main().Press(Button::kPrint);
  WaitForPaper();
  EXPECT_TRUE(loaded("libcups"));
  EXPECT_FALSE(loaded("libzip"));
}

TEST_F(PrintOnQueueTest, ListGoesToTheDefaultQueueAndLeavesNoImage) {
  work().RunHost({"fill", "--logs", "5", "--until", "2026-06-30"});
  Start();
  NoteMoment();
  main().Press(Button::kPrint);
  const std::string document = WaitForPaper();
  const auto pages = ReadPrintedPages(document);
  ExpectMargins(pages, kListSheet, from(), std::time(nullptr));
  EXPECT_EQ(RowsOf(pages), RowsOnPaper(CellsOf(work())));
  ExpectFontsEmbedded(document);
  EXPECT_THAT(Images(), IsEmpty());
}

TEST_F(PrintOnQueueTest, ReportGoesToTheDefaultQueueAndLeavesNoImage) {
  work().RunHost({"fill", "--logs", "1", "--until", "2026-06-30"});
  Start();
  ViewerPage viewer = View(work().Logs().front());
  viewer.Choose({"alt+v"});
  NoteMoment();
  viewer.PressPrint();
  const std::string document = WaitForPaper();
  ExpectMargins(ReadPrintedPages(document), "Meter Values", from(), std::time(nullptr));
  ExpectFontsEmbedded(document);
  EXPECT_THAT(Images(), IsEmpty());
}

}  // namespace
}  // namespace logbook::e2e
