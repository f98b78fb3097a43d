// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/ListPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TestServices.h"

namespace logbook {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PrintListTest : public testing::Test {
 protected:
  PrintListTest() {
    ListView& list = station.state.ListView1;
    for (int column = 1; column <= ListView::kColumns; ++column)
      list.Column(column).Text = "Title " + std::to_string(column);
  }

  ListRow& AddRow(const std::string& text) {
    ListRow row{.Text = text};
    for (int item = 1; item <= 8; ++item) row.SubItem(item) = text + "." + std::to_string(item);
    station.state.ListView1.Rows.push_back(row);
    return station.state.ListView1.Rows.back();
  }
  void Print() { PrintList(station.state, station.services); }
  void UsePdfDevice() {
    station.state.AppPath = "C:\\app";
    station.print.driver = "Adobe PDF Converter";
    station.print.image = kImage;
    station.print.on_print = [this] { station.disk.Put(kImage, "image"); };
  }
  const F1Book& Sheet() { return station.print.sheets.at(0); }
  static std::vector<std::string> RowOf(const F1Book& sheet, int row) {
    std::vector<std::string> cells;
    for (int column = 1; column <= sheet.LastColumn(); ++column)
      cells.push_back(sheet.Text(row, column));
    return cells;
  }

  static constexpr const char* kImage = "C:\\QUOREX\\PDF\\Logbook_List.pdf";
  test::TestWorkstation station;
};

TEST_F(PrintListTest, AnEmptyListPrintsAPageWithOnlyTheTitleRow) {
  Print();
  ASSERT_EQ(station.print.sheets.size(), 1u);
  EXPECT_EQ(Sheet().LastRow(), 1);
  EXPECT_THAT(RowOf(Sheet(), 1), ElementsAre("Title 1", "Title 2", "Title 3", "Title 4", "Title 5",
                                             "Title 6", "Title 7", "Title 8", "Title 9"));
}

TEST_F(PrintListTest, PrintingIsLongWorkUntilItEndsOrFails) {
  int works = -1;
  station.print.on_print = [&] { works = station.events.works; };
  Print();
  EXPECT_EQ(works, 1);
  EXPECT_EQ(station.events.works, 0);
  station.print.print_error = RunTimeError(ErrorNumber::kPrinterError);
  Print();
  EXPECT_EQ(station.events.works, 0);
}

TEST_F(PrintListTest, EachLogIsARowOfNineCellsInTheOrderOfTheList) {
  AddRow("b");
  AddRow("a");
  Print();
  EXPECT_THAT(RowOf(Sheet(), 2),
              ElementsAre("b", "b.1", "b.2", "b.3", "b.4", "b.5", "b.6", "b.7", "b.8"));
  EXPECT_THAT(RowOf(Sheet(), 3),
              ElementsAre("a", "a.1", "a.2", "a.3", "a.4", "a.5", "a.6", "a.7", "a.8"));
  EXPECT_EQ(Sheet().LastRow(), 3);
}

TEST_F(PrintListTest, AColumnChosenByTheUserAppearsUnderItsOwnTitle) {
  station.state.ListView1.Column(5).Text = "Forward Power [W]";
  AddRow("log").SubItem(4) = "1550";
  Print();
  EXPECT_EQ(Sheet().Text(1, 5), "Forward Power [W]");
  EXPECT_EQ(Sheet().Text(2, 5), "1550");
}

TEST_F(PrintListTest, ARowHasNineCellsWhateverTheyHold) {
  AddRow("log").SubItems = {};
  station.state.ListView1.Rows[0].SubItem(8) = "comment";
  Print();
  EXPECT_THAT(RowOf(Sheet(), 2), ElementsAre("log", "", "", "", "", "", "", "", "comment"));
}

TEST_F(PrintListTest, ACommentOf21CharactersAppearsWith20) {
  AddRow("log").SubItem(8) = "123456789012345678901";
  AddRow("log").SubItem(8) = "12345678901234567890";
  Print();
  EXPECT_EQ(Sheet().Text(2, 9), "12345678901234567890");
  EXPECT_EQ(Sheet().Text(3, 9), "12345678901234567890");
}

TEST_F(PrintListTest, CharactersOfACommentAreCountedNotBytes) {
  std::string comment;
  for (int i = 0; i < 21; ++i) comment += "\xc3\xa9";
  AddRow("log").SubItem(8) = comment;
  Print();
  EXPECT_EQ(Sheet().Text(2, 9), comment.substr(0, 40));
}

TEST_F(PrintListTest, TheSheetHasTitleNameFontHeaderFooterAndLandscape) {
  F1Book& before = station.state.frmMain.F1Report;
  before.SetDefaultFont("Arial", 20);
  before.SetSelection(-1, -1, -1, -1);
  before.SetFont({"Arial", 20, true, true, true, true, 0xFF});
  Print();
  const F1Book& sheet = Sheet();
  EXPECT_EQ(sheet.Title(), "Maintenance LogBook");
  EXPECT_EQ(sheet.SheetName(), "List View");
  EXPECT_EQ(sheet.PageHeader(), "&\"Courier\"&9&A");
  EXPECT_EQ(sheet.PageFooter(), "&R&\"Courier\"&9&D &T&C&\"Courier\"&9Page &P/&N");
  EXPECT_EQ(sheet.FontOf(1, 1), (CellFont{"Courier", 9}));
  EXPECT_EQ(sheet.DefaultFont(), (CellFont{"Courier", 9}));
  for (int column = 1; column <= 9; ++column) EXPECT_TRUE(sheet.ColumnIsFitted(column));
  EXPECT_TRUE(sheet.Landscape());
}

TEST_F(PrintListTest, ASecondPrintHasNothingOfTheFirst) {
  AddRow("old");
  Print();
  station.state.ListView1.Clear();
  Print();
  EXPECT_EQ(station.print.sheets.at(1).LastRow(), 1);
}

TEST_F(PrintListTest, TheOutputIsPreparedBeforeThePrint) {
  station.print.driver = "Adobe PDF Converter";
  station.state.AppPath = "C:\\app";
  station.state.AppName = "logbook";
  Print();
  EXPECT_THAT(station.print.calls,
              ElementsAre("exptGetDefaultPrinter 260 260",
                          "exptSetAcrobatOutput C:\\app\\logbook.exe| Logbook_List| \\PDF\\| 3000",
                          "PrintSheet"));
}

TEST_F(PrintListTest, WithoutADefaultPrinterTheMessageIsShownAndThenPrintingGoesOn) {
  station.print.printer_error = 1801;
  Print();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "message 1801");
  EXPECT_EQ(station.messages.shown[0].Title, std::optional<std::string>(""));
  EXPECT_EQ(station.print.sheets.size(), 1u);
}

TEST_F(PrintListTest, OnAnOrdinaryPrinterNoUploadTakesPlace) {
  station.ecm.enabled = true;
  Print();
  EXPECT_EQ(station.print.sheets.size(), 1u);
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled"));
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

TEST_F(PrintListTest, OnThePdfDeviceWithoutAContentServerAnImageIsMadeAndLeftAlone) {
  UsePdfDevice();
  Print();
  EXPECT_TRUE(station.disk.Has(kImage));
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled"));
  EXPECT_FALSE(station.disk.Has("C:\\Norvane.Quorex.ECM"));
}

TEST_F(PrintListTest, OnThePdfDeviceTheImageGoesToTheContentServer) {
  UsePdfDevice();
  station.ecm.enabled = true;
  Print();
  const std::string folder = "2611150509594711_LOGBK";
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled", "EcmSubmit " + folder));
  EXPECT_EQ(station.disk.Get("C:\\Norvane.Quorex.ECM\\" + folder + "\\Logbook_List.pdf"), "image");
  EXPECT_THAT(station.disk.Get("C:\\Norvane.Quorex.ECM\\" + folder + ".xml"),
              HasSubstr("<Reason>Maintenance LogBook has been printed.</Reason>"));
}

TEST_F(PrintListTest, AnImageThatDoesNotComeIsSaid) {
  UsePdfDevice();
  station.print.on_print = nullptr;
  station.ecm.enabled = true;
  Print();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "Could not find a print image file.");
  EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kCritical);
  EXPECT_EQ(station.messages.shown[0].Title, std::optional<std::string>("Maintenance LogBook"));
}

TEST_F(PrintListTest, AnErrorOfTheUploadEndsItInSilence) {
  UsePdfDevice();
  station.ecm.enabled = true;
  station.disk.MakeFolders("C:\\Norvane.Quorex.ECM\\2611150509594711_LOGBK\\Logbook_List.pdf");
  Print();
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_THAT(station.ecm.calls, ElementsAre("EcmEnabled"));
}

TEST_F(PrintListTest, AnErrorEndsItInSilence) {
  station.print.print_error = RunTimeError(ErrorNumber::kPrinterError);
  Print();
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_EQ(station.print.calls.back(), "PrintSheet");
}

TEST_F(PrintListTest, SuccessShowsNoMessage) {
  Print();
  EXPECT_THAT(station.messages.shown, IsEmpty());
}

}  // namespace
}  // namespace logbook
