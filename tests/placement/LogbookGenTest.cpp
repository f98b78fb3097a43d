// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "placement/LogbookGen.h"

#include <gtest/gtest.h>

#include "base/RunTimeError.h"
#include "support/TestServices.h"
#include "text/CSVMan.h"

namespace logbook {
namespace {

using test::TestWorkstation;

// Lists, each ended by one NUL, and a second NUL at the end.
std::string Arrangement(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\0';
  return text + '\0';
}

const std::vector<std::string> kStandard = {"0,0,11145,6825", "120,120,10815,5535", "0,0,900,330",
                                            "0,0,900,330",    "0,0,1000,330",       "0,0,1000,330",
                                            "0,0,1400,330",   "0,0,1400,330",       "0,0,1400,330"};

void ExpectPlace(const Control& control, int left, int top, int width, int height) {
  EXPECT_EQ(control.Place.Left, left) << control.Name;
  EXPECT_EQ(control.Place.Top, top) << control.Name;
  EXPECT_EQ(control.Place.Width, width) << control.Name;
  EXPECT_EQ(control.Place.Height, height) << control.Name;
}

// Inner size 11055 by 6420: the twin's frame takes 90 and 405.
void ExpectStandard(const MainWindow& window) {
  EXPECT_EQ(window.Window.Place.Width, 11145);
  EXPECT_EQ(window.Window.Place.Height, 6825);
  ExpectPlace(window.ListView1, 120, 120, 10815, 5535);
  ExpectPlace(window.cmdHelp, 10035, 5970, 900, 330);
  ExpectPlace(window.cmdExit, 9015, 5970, 900, 330);
  ExpectPlace(window.cmdArchive, 7655, 5970, 1000, 330);
  ExpectPlace(window.cmdPrint, 6535, 5970, 1000, 330);
  ExpectPlace(window.cmdBrowse, 5015, 5970, 1400, 330);
  ExpectPlace(window.cmdDelete, 3495, 5970, 1400, 330);
  ExpectPlace(window.cmdRecord, 1975, 5970, 1400, 330);
}

TEST(ArrangeMainWindow, StandardResourcePutsTheListOnTopAndSevenButtonsBelow) {
  TestWorkstation station;
  ArrangeMainWindow(station.state, station.services);
  ExpectStandard(station.state.frmMain);
}

TEST(ArrangeMainWindow, ResourceEndsInOneNulAfterLoading) {
  TestWorkstation station;
  EXPECT_EQ(LoadResText(station.state.machine, "IDRES_LOGBOOK_ARRANGE", "LOGBOOK_RES"),
            Arrangement(kStandard).substr(0, Arrangement(kStandard).size() - 1));
}

TEST(ArrangeMainWindow, WiderButtonMovesAllToItsLeft) {
  TestWorkstation station;
  std::vector<std::string> lines = kStandard;
  lines[5] = "0,0,1300,330";  // cmdPrint
  ArrangeMainWindow(station.state, station.services, Arrangement(lines));
  const MainWindow& window = station.state.frmMain;
  ExpectPlace(window.cmdArchive, 7655, 5970, 1000, 330);
  ExpectPlace(window.cmdPrint, 6235, 5970, 1300, 330);
  ExpectPlace(window.cmdBrowse, 4715, 5970, 1400, 330);
  ExpectPlace(window.cmdDelete, 3195, 5970, 1400, 330);
  ExpectPlace(window.cmdRecord, 1675, 5970, 1400, 330);
}

TEST(ArrangeMainWindow, AllButtonsStandAtTheTopOfHelpWhateverTheirOwnHeight) {
  TestWorkstation station;
  std::vector<std::string> lines = kStandard;
  lines[3] = "0,0,900,600";   // cmdExit
  lines[8] = "0,0,1400,200";  // cmdRecord
  ArrangeMainWindow(station.state, station.services, Arrangement(lines));
  const MainWindow& window = station.state.frmMain;
  ExpectPlace(window.cmdHelp, 10035, 5970, 900, 330);
  ExpectPlace(window.cmdExit, 9015, 5970, 900, 600);
  ExpectPlace(window.cmdArchive, 7655, 5970, 1000, 330);
  ExpectPlace(window.cmdRecord, 1975, 5970, 1400, 200);
}

TEST(ArrangeMainWindow, BlanksAroundNumbersGiveTheSameResult) {
  TestWorkstation station;
  std::vector<std::string> lines = kStandard;
  lines[0] = " 0 , 0 , 11145 , 6825 ";
  lines[6] = "0,0,  1400,330  ";
  ArrangeMainWindow(station.state, station.services, Arrangement(lines));
  ExpectStandard(station.state.frmMain);
}

TEST(ArrangeMainWindow, FirstTwoNumbersOfAListAreNotRead) {
  TestWorkstation station;
  std::vector<std::string> lines = kStandard;
  for (std::string& line : lines) line.replace(0, line.find(',', line.find(',') + 1), "x,y");
  ArrangeMainWindow(station.state, station.services, Arrangement(lines));
  ExpectStandard(station.state.frmMain);
}

TEST(ArrangeMainWindow, MissingOrShortResourceIsARunTimeError) {
  const std::vector<std::string> short_list(kStandard.begin(), kStandard.end() - 1);
  for (const std::string& text :
       {std::string(), Arrangement(short_list), Arrangement({"0,0,11145"})}) {
    TestWorkstation station;
    EXPECT_THROW(ArrangeMainWindow(station.state, station.services, text), RunTimeError);
  }
}

}  // namespace
}  // namespace logbook
