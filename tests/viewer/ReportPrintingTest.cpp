// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/ReportPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>

#include "base/Profile.h"
#include "support/ProcessFigures.h"
#include "support/Viewing.h"

namespace logbook {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ReportPrinting : public testing::Test {
 protected:
  // Presses Print with this view mode.
  void Print(std::int16_t view_mode) {
    log.state.ViewMode = view_mode;
    cmdPrint_Click(log.state, log.services, log.view);
  }
  const F1Book& Sheet() { return log.print.sheets.at(0); }
  // The texts of the sheet printed first.
  std::vector<std::string> Rows() {
    std::vector<std::string> rows;
    for (int row = 1; row <= Sheet().LastRow(); ++row) rows.push_back(Sheet().Text(row, 1));
    return rows;
  }
  // Rows that have a border.
  std::vector<int> RuledRows() {
    std::vector<int> rows;
    for (int row = 1; row <= Sheet().LastRow(); ++row) {
      if (Sheet().Border(row, 1) != CellBorder()) rows.push_back(row);
    }
    return rows;
  }

  test::Viewing log;
};

TEST_F(ReportPrinting, ViewModeZeroPrintsNothing) {
  Print(0);
  EXPECT_THAT(log.print.calls, IsEmpty());
  EXPECT_THAT(log.messages.shown, IsEmpty());
}

TEST_F(ReportPrinting, ViewModesBeyondTheReportsPrintNothing) {
  for (const std::int16_t mode : {std::int16_t{-1}, std::int16_t{12}, std::int16_t{100}}) {
    Print(mode);
    EXPECT_THAT(log.print.calls, IsEmpty()) << mode;
  }
}

TEST_F(ReportPrinting, PrintingIsLongWorkUntilItEndsOrFails) {
  int works = -1;
  log.print.on_print = [&] { works = log.events.works; };
  Print(5);
  EXPECT_EQ(works, 1);
  EXPECT_EQ(log.events.works, 0);
  log.print.print_error = RunTimeError(ErrorNumber::kPrinterError);
  Print(5);
  EXPECT_EQ(log.events.works, 0);
}

TEST_F(ReportPrinting, TheTuneReportIsPrintedByTheHost) {
  log.cell.on_written = [this](const std::string&) { log.cell.text = "0"; };
  Print(1);
  EXPECT_THAT(log.print.calls, IsEmpty());
  EXPECT_THAT(log.cell.written, ElementsAre("2"));
}

TEST_F(ReportPrinting, EachViewModePrintsItsFileUnderItsName) {
  struct Row {
    std::int16_t mode;
    const char* file;
    bool landscape;
    const char* name;
  };
  const Row rows[] = {
      {2, "acqlog.txt", false, "Acquisition Log"},      {3, "sequence.log", true, "Sequence Log"},
      {4, "chnseq.log", false, "Chained Sequence Log"}, {5, "errlog.txt", false, "Error Log"},
      {6, "mainte.rpt", false, "Maintenance Records"},  {7, "meter.rpt", false, "Meter Values"},
      {8, "analog.rpt", false, "Analog Values"},        {9, "bitout.rpt", false, "Bit Out Values"},
      {10, "bitin.rpt", false, "Bit In Values"},        {11, "Sys.rpt", false, "System Parameters"},
  };
  for (const Row& row : rows) log.Put(row.file, std::string("text of ") + row.file + "\r\n");
  for (const Row& row : rows) {
    log.print.sheets.clear();
    Print(row.mode);
    ASSERT_EQ(log.print.sheets.size(), 1u) << row.file;
    EXPECT_EQ(Sheet().Text(1, 1), std::string("text of ") + row.file);
    EXPECT_EQ(Sheet().Landscape(), row.landscape) << row.file;
    EXPECT_EQ(Sheet().SheetName(), row.name);
  }
}

TEST_F(ReportPrinting, TheReportIsFollowedByTheCommentBelowARule) {
  log.Put("errlog.txt", "first\r\nsecond\r\n");
  log.Put("comment.txt", "done\r\nwell\r\n");
  Print(5);
  EXPECT_THAT(Rows(), ElementsAre("first", "second", "", "", "Comment:", "done", "well"));
  EXPECT_THAT(RuledRows(), ElementsAre(5));
  EXPECT_EQ(Sheet().Border(5, 1), CellBorder{.Top = SheetEdge{4}});
  EXPECT_EQ(Sheet().LastColumn(), 1);
}

TEST_F(ReportPrinting, ALogWithoutACommentStillPrintsTheCommentRow) {
  log.Put("errlog.txt", "first\r\n");
  Print(5);
  EXPECT_THAT(Rows(), ElementsAre("first", "", "", "Comment:"));
}

TEST_F(ReportPrinting, AMissingReportPrintsTheCommentAlone) {
  log.Put("comment.txt", "done\r\n");
  Print(7);
  EXPECT_THAT(Rows(), ElementsAre("", "", "Comment:", "done"));
  EXPECT_THAT(log.messages.shown, IsEmpty());
}

TEST_F(ReportPrinting, ACommentLineOf71CharactersPrintsItsFirst70) {
  log.Put("comment.txt", std::string(70, 'a') + "b\r\n" + std::string(70, 'c') + "\r\n");
  Print(5);
  EXPECT_EQ(Rows().at(3), std::string(70, 'a'));
  EXPECT_EQ(Rows().at(4), std::string(70, 'c'));
}

TEST_F(ReportPrinting, CharactersOfACommentLineAreCountedNotBytes) {
  std::string umlauts, kanji;
  for (int i = 0; i < 70; ++i) {
    umlauts += "\xc3\xa4";
    kanji += "\xe6\xbc\xa2";
  }
  log.Put("comment.txt", std::string(70, '\xe4') + "b\r\n");  // one byte each in 1252
  Print(5);
  EXPECT_EQ(Rows().at(3), umlauts);

  test::Viewing japanese(932);
  std::string pairs;
  for (int i = 0; i < 70; ++i) pairs += "\x8a\xbf";  // two bytes each
  japanese.Put("comment.txt", pairs + "b\r\n");
  japanese.state.ViewMode = 5;
  cmdPrint_Click(japanese.state, japanese.services, japanese.view);
  EXPECT_EQ(japanese.print.sheets.at(0).Text(4, 1), kanji);
}

TEST_F(ReportPrinting, LinesOfTheReportAreNotCut) {
  log.Put("errlog.txt", std::string(500, 'a') + "\r\n");
  Print(5);
  EXPECT_EQ(Rows().at(0), std::string(500, 'a'));
}

TEST_F(ReportPrinting, AReportThatIsCutOnTheScreenIsNotCutOnPaper) {
  std::string bytes;
  for (int i = 0; i < 10000; ++i) bytes += "line " + std::to_string(i) + "\r\n";
  ASSERT_GT(bytes.size(), 65536u);
  log.Put("acqlog.txt", bytes);
  Print(2);
  EXPECT_EQ(Rows().at(9999), "line 9999");
}

TEST_F(ReportPrinting, ALineOf64KilobytesStopsReadingForTheCommentToo) {
  log.Put("errlog.txt", "first\r\n" + std::string(65534, 'a') + "\r\nlast\r\n");
  log.Put("comment.txt", "done\r\n");
  Print(5);
  EXPECT_THAT(Rows(), ElementsAre("first", "", "", "Comment:"));
}

TEST_F(ReportPrinting, ALineOneByteShorterIsPrinted) {
  log.Put("errlog.txt", std::string(65533, 'a') + "\r\nlast\r\n");
  log.Put("comment.txt", "done\r\n");
  Print(5);
  EXPECT_EQ(Rows().at(0).size(), 65533u);
  EXPECT_EQ(Rows().at(1), "last");
  EXPECT_EQ(Rows().back(), "done");
}

TEST_F(ReportPrinting, ALineWithoutEndIsReadAsFarAsTellsThatItIsTooLong) {
  log.Put("errlog.txt", "first\r\nx");
  std::ofstream(log.disk.Native(log.File("errlog.txt")),
                std::ios::binary | std::ios::in | std::ios::out)
      .seekp(1'000'000'000)
      .put('x');
  const std::int64_t before = test::BytesRead();
  Print(5);
  EXPECT_LT(test::BytesRead() - before, 512 * 1024);
  EXPECT_THAT(Rows(), ElementsAre("first", "", "", "Comment:"));
}

TEST_F(ReportPrinting, TheLineLimitCountsBytesOfTheCodePage) {
  test::Viewing japanese(932);
  std::string bytes;
  for (int i = 0; i < 32767; ++i) bytes += "\x82\xa0";
  japanese.Put("errlog.txt", bytes + "\r\nlast\r\n");
  japanese.state.ViewMode = 5;
  cmdPrint_Click(japanese.state, japanese.services, japanese.view);
  EXPECT_EQ(japanese.print.sheets.at(0).Text(1, 1), "") << "65534 bytes and the line end";
}

TEST_F(ReportPrinting, APairThatIsNoCharacterCountsAsTheOneByteThatStandsForIt) {
  test::Viewing japanese(932);
  std::string bytes;
  for (int i = 0; i < 40000; ++i) bytes += "\x82\x40";
  japanese.Put("errlog.txt", bytes + "\r\nlast\r\n");
  japanese.state.ViewMode = 5;
  cmdPrint_Click(japanese.state, japanese.services, japanese.view);
  EXPECT_NE(japanese.print.sheets.at(0).Text(1, 1), "") << "40000 bytes, not 80000";
  EXPECT_EQ(japanese.print.sheets.at(0).Text(2, 1), "last");
}

TEST_F(ReportPrinting, TextGoesThroughTheCodePage) {
  log.Put("errlog.txt",
          "20 \xb0"
          "C\r\n");
  Print(5);
  EXPECT_EQ(Rows().at(0),
            "20 \xc2\xb0"
            "C");
}

TEST_F(ReportPrinting, ASecondPrintHasNothingOfTheFirst) {
  log.Put("errlog.txt", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n");
  Print(5);
  log.print.sheets.clear();
  Print(7);
  EXPECT_THAT(Rows(), ElementsAre("", "", "Comment:"));
  EXPECT_THAT(RuledRows(), ElementsAre(3));
  EXPECT_EQ(Sheet().SheetName(), "Meter Values");
}

TEST_F(ReportPrinting, InitReportLeavesTheNameForOtherViewModes) {
  log.state.ViewMode = 5;
  InitReport(log.state, log.view);
  log.view.Sheet.SetText(1, 1, "old");
  log.state.ViewMode = 0;
  InitReport(log.state, log.view);
  EXPECT_EQ(log.view.Sheet.SheetName(), "Error Log");
  EXPECT_EQ(log.view.Sheet.Text(1, 1), "");
  EXPECT_EQ(log.view.Sheet.Title(), "Maintenance LogBook");
}

TEST_F(ReportPrinting, TheSheetHasFontHeaderFooterAndFittedColumns) {
  log.view.Sheet.SetDefaultFont("Arial", 20);
  log.view.Sheet.SetSelection(-1, -1, -1, -1);
  log.view.Sheet.SetFont({"Arial", 20, true, true, true, true, 0xFF});
  Print(5);
  EXPECT_EQ(Sheet().Title(), "Maintenance LogBook");
  EXPECT_EQ(Sheet().PageHeader(), "&\"Courier\"&9&A");
  EXPECT_EQ(Sheet().PageFooter(), "&R&\"Courier\"&9&D &T&C&\"Courier\"&9Page &P/&N");
  EXPECT_EQ(Sheet().FontOf(1, 1), (CellFont{"Courier", 9}));
  EXPECT_EQ(Sheet().DefaultFont(), (CellFont{"Courier", 9}));
  EXPECT_TRUE(Sheet().ColumnIsFitted(1));
}

TEST_F(ReportPrinting, TheDocumentIsNamedAfterFolderAndFile) {
  log.print.driver = "Adobe PDF Converter";
  log.state.AppPath = "C:\\app";
  log.state.AppName = "logbook";
  Print(11);
  EXPECT_THAT(
      log.print.calls,
      Contains("exptSetAcrobatOutput C:\\app\\logbook.exe| 26111500_sys.rpt| \\PDF\\| 3000"));
  EXPECT_EQ(log.print.calls.back(), "PrintSheet");
}

TEST_F(ReportPrinting, OnAnOrdinaryPrinterNothingIsUploadedAndNothingIsSaid) {
  log.ecm.enabled = true;
  Print(5);
  EXPECT_EQ(log.print.sheets.size(), 1u);
  EXPECT_THAT(log.ecm.calls, ElementsAre("EcmEnabled"));
  EXPECT_THAT(log.messages.shown, IsEmpty());
}

TEST_F(ReportPrinting, OnThePdfDeviceTheImageGoesToTheContentServer) {
  const std::string image = "C:\\QUOREX\\PDF\\26111500_errlog.txt.pdf";
  log.state.AppPath = "C:\\app";
  log.print.driver = "Adobe PDF Converter";
  log.print.image = image;
  log.print.on_print = [&] { log.disk.Put(image, "image"); };
  log.ecm.enabled = true;
  Print(5);
  const std::string folder = "2611150509594711_LOGBK";
  EXPECT_THAT(log.ecm.calls, ElementsAre("EcmEnabled", "EcmSubmit " + folder));
  EXPECT_TRUE(log.disk.Has("C:\\Norvane.Quorex.ECM\\" + folder + "\\26111500_errlog.txt.pdf"));
}

TEST_F(ReportPrinting, AnImageThatCannotBeCopiedIsAnErrorThatIsShown) {
  const std::string image = "C:\\QUOREX\\PDF\\26111500_errlog.txt.pdf";
  log.state.AppPath = "C:\\app";
  log.print.driver = "Adobe PDF Converter";
  log.print.image = image;
  log.disk.Put(image, "image");
  log.disk.MakeFolders("C:\\Norvane.Quorex.ECM\\2611150509594711_LOGBK\\26111500_errlog.txt.pdf");
  log.ecm.enabled = true;
  Print(5);
  ASSERT_EQ(log.messages.shown.size(), 1u);
  EXPECT_EQ(log.messages.shown[0].Text, "Path/File access error");
  EXPECT_EQ(log.messages.shown[0].Icon, MessageIcon::kExclamation);
}

TEST_F(ReportPrinting, AnErrorIsShownAndTheViewerComesBack) {
  log.print.print_error = RunTimeError(ErrorNumber::kPrinterError);
  Print(5);
  ASSERT_EQ(log.messages.shown.size(), 1u);
  EXPECT_EQ(log.messages.shown[0].Text, "Printer error");
  EXPECT_EQ(log.messages.shown[0].Icon, MessageIcon::kExclamation);
  EXPECT_EQ(log.messages.shown[0].Buttons, MessageButtons::kOk);
  EXPECT_EQ(log.messages.shown[0].Title, std::nullopt);
  EXPECT_THAT(log.forms.calls, Contains("ShowLogViewAgain"));
}

TEST_F(ReportPrinting, AFileThatCannotBeReadIsAnErrorBeforeAnythingIsPrinted) {
  log.disk.MakeFolders(log.File("errlog.txt"));
  Print(5);
  ASSERT_EQ(log.messages.shown.size(), 1u);
  EXPECT_EQ(log.messages.shown[0].Text, "Path/File access error");
  EXPECT_THAT(log.print.calls, IsEmpty());
}

TEST_F(ReportPrinting, AnErrorOfTheTuneReportIsShownAndNothingElse) {
  log.cell.fails_on_read = true;
  Print(1);
  ASSERT_EQ(log.messages.shown.size(), 1u);
  EXPECT_EQ(log.messages.shown[0].Text, "Internal error");
  EXPECT_THAT(log.forms.calls, testing::Not(Contains("ShowLogViewAgain")));
}

TEST_F(ReportPrinting, AfterTheCeErrorLogTheReportOfTheLastViewModeIsPrinted) {
  log.Put("errlog.txt", "error log\r\n");
  log.Put("ceerrlog.txt", "ce error log\r\n");
  log.Choose(&LogView::mnuErrLog);
  log.Choose(&LogView::mnuCeErrLog);
  cmdPrint_Click(log.state, log.services, log.view);
  EXPECT_EQ(Rows().at(0), "error log");
}

TEST_F(ReportPrinting, AStaleViewModePrintsItsReportOfTheLogOpenedNextThoughNothingIsOnShow) {
  log.Put("errlog.txt", "of the first log\r\n");
  log.Choose(&LogView::mnuErrLog);  // and then the close box, which changes nothing
  log.MakeLog("26111501", "11/15/2026 06:00:00");
  log.disk.Put(log.InLog("26111501", "errlog.txt"), "of the second log\r\n");
  log.state.FileList[2].Name = "26111501";
  log.state.LogCount = log.state.CurrentLog = 2;
  LogView next;
  LoadLogView(log.state, next);
  EXPECT_EQ(next.ReportText, "");
  cmdPrint_Click(log.state, log.services, next);
  EXPECT_EQ(Rows().at(0), "of the second log");
}

TEST_F(ReportPrinting, ViewModeAndPaneDoNotChange) {
  log.Put("errlog.txt", "error log\r\n");
  log.Choose(&LogView::mnuErrLog);
  cmdPrint_Click(log.state, log.services, log.view);
  EXPECT_EQ(log.state.ViewMode, 5);
  EXPECT_EQ(log.view.ReportText, "error log\r\n");
}

}  // namespace
}  // namespace logbook
