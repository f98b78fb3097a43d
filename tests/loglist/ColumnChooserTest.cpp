// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/ColumnChooser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "loglist/ColumnValues.h"
#include "loglist/LogList.h"
#include "records/LogCommands.h"
#include "support/DiskCalls.h"
#include "support/TestServices.h"
#include "text/CSVMan.h"

namespace logbook {
namespace {

// Numbers 0, 1, 2 ... as a snapshot file.
std::string Numbers(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(i) + "\r\n";
  return text;
}

class Chooser : public testing::Test {
 protected:
  Chooser() {
    FillCatalogues(state.catalogues);
    state.ChangeColumn = 3;
  }

  ColumnChooser Open() {
    ColumnChooser chooser;
    LoadColumnChooser(state, chooser);
    return chooser;
  }

  // Opens the dialog, sets an option, selects an entry and presses OK.
  ColumnChooser Choose(int option, int index) {
    ColumnChooser chooser = Open();
    if (option != 1) SetOption(state, chooser, option);
    chooser.ListIndex = index;
    ColumnChooserOK(state, station.services, chooser);
    return chooser;
  }

  std::string Ini(const std::string& section, const std::string& key) {
    std::string value;
    GetIniString(state.machine, section, key, "(none)", value, state.IniFile);
    return value;
  }

  test::TestWorkstation station;
  AppState& state = station.state;
};

TEST_F(Chooser, OpensOnTuneReportWithNothingSelected) {
  const ColumnChooser chooser = Open();
  EXPECT_EQ(chooser.OptionSet, 1);
  EXPECT_EQ(chooser.ListIndex, -1);
  EXPECT_EQ(chooser.Items, FillTuneChoices(state.catalogues));
  EXPECT_FALSE(chooser.Unloaded);
}

TEST_F(Chooser, TakesItsTextsFromTheStringTable) {
  const ColumnChooser chooser = Open();
  EXPECT_EQ(chooser.Window.Caption, "Change List Item");
  EXPECT_EQ(chooser.Frame1.Caption, "Category");
  EXPECT_EQ(chooser.Option1.Caption, "Tune Report");
  EXPECT_EQ(chooser.Option2.Caption, "Meter Value");
  EXPECT_EQ(chooser.Option3.Caption, "Analog Value");
  EXPECT_EQ(chooser.cmdOK.Caption, "OK");
  EXPECT_EQ(chooser.cmdCancel.Caption, "Cancel");
  EXPECT_EQ(chooser.cmdHelp.Caption, "Help");
}

TEST_F(Chooser, SetsTheFontOfTheFormAndOfEveryControl) {
  const ColumnChooser chooser = Open();
  for (const Control* control :
       {&chooser.Window, &chooser.Frame1, &chooser.Option1, &chooser.Option2, &chooser.Option3,
        &chooser.List1, &chooser.cmdOK, &chooser.cmdCancel, &chooser.cmdHelp}) {
    EXPECT_EQ(control->TextFont.Name, "Arial") << control->Name;
    EXPECT_EQ(control->TextFont.Size, 8) << control->Name;
  }
}

TEST_F(Chooser, OffersAnalogValuesInCeModeAlone) {
  EXPECT_FALSE(Open().Option3.Visible);
  state.CEMode = true;
  EXPECT_TRUE(Open().Option3.Visible);
}

TEST_F(Chooser, TheTuneListHolds155NamesWithoutThoseOfTheReportAlone) {
  const std::vector<std::string> entries = FillTuneChoices(state.catalogues);
  ASSERT_EQ(entries.size(), 155u);
  for (std::size_t row = 0; row < entries.size(); ++row) {
    EXPECT_EQ(entries[row], state.catalogues.TuneItems[row].Name);
  }
  EXPECT_EQ(entries.back(), "LmrP Bias(Varion TRZ(ce))");
}

TEST_F(Chooser, TheMeterListPrefixesTheStyleBRows) {
  const std::vector<std::string> entries = FillMeterChoices(state.catalogues);
  ASSERT_EQ(entries.size(), 29u);
  for (std::size_t row = 0; row < entries.size(); ++row) {
    const std::string prefix = row >= 25 && row <= 27 ? "Style B:" : "";
    EXPECT_EQ(entries[row], prefix + state.catalogues.MeterItems[row].Name);
  }
}

TEST_F(Chooser, TheAnalogListPrefixesTheRowsOfEachVariant) {
  const std::vector<std::string> entries = FillAnalogChoices(state.catalogues);
  ASSERT_EQ(entries.size(), 215u);
  for (std::size_t row = 0; row < entries.size(); ++row) {
    std::string prefix;
    if (row >= 107 && row <= 124) prefix = "Lumarin:";
    if (row >= 125 && row <= 149) prefix = "NEW RF:";
    if (row >= 150 && row <= 168) prefix = "Varion TRZ:";
    if (row >= 169 && row <= 172) prefix = "Style B:";
    if (row >= 173 && row <= 191) prefix = "Varion TRZ(ce):";
    EXPECT_EQ(entries[row], prefix + state.catalogues.AnalogItems[row].Name) << row;
  }
}

TEST_F(Chooser, AChangeOfCategoryFillsTheListAnewAndSelectsNothing) {
  ColumnChooser chooser = Open();
  chooser.ListIndex = 7;
  SetOption(state, chooser, 2);
  EXPECT_EQ(chooser.Items, FillMeterChoices(state.catalogues));
  EXPECT_EQ(chooser.ListIndex, -1);
  SetOption(state, chooser, 3);
  EXPECT_EQ(chooser.Items, FillAnalogChoices(state.catalogues));
  SetOption(state, chooser, 1);
  EXPECT_EQ(chooser.Items, FillTuneChoices(state.catalogues));
}

TEST_F(Chooser, OkWithoutASelectionShowsAMessageAndStaysOpen) {
  const ColumnChooser chooser = Choose(1, -1);
  EXPECT_FALSE(chooser.Unloaded);
  ASSERT_EQ(station.messages.shown.size(), 1u);
  const Message& message = station.messages.shown[0];
  EXPECT_EQ(message.Text, "Select List Item!");
  EXPECT_EQ(message.Icon, MessageIcon::kExclamation);
  EXPECT_EQ(message.Buttons, MessageButtons::kOk);
  EXPECT_EQ(message.Title, std::nullopt);
  EXPECT_FALSE(station.disk.Has(state.IniFile));
}

TEST_F(Chooser, EveryOfferedTuneRowIsStoredUnderItsOwnNumber) {
  for (int row = 0; row <= 154; ++row) {
    EXPECT_TRUE(Choose(1, row).Unloaded);
    ASSERT_EQ(Ini("Header3", "Item"), std::to_string(row));
  }
  EXPECT_EQ(Ini("Header3", "Cat"), "Tune");
}

TEST_F(Chooser, MeterAndAnalogRowsAreStoredByPosition) {
  Choose(2, 25);
  EXPECT_EQ(Ini("Header3", "Cat"), "Meter");
  EXPECT_EQ(Ini("Header3", "Item"), "25");
  state.CEMode = true;
  Choose(3, 107);
  EXPECT_EQ(Ini("Header_CE3", "Cat"), "Analog");
  EXPECT_EQ(Ini("Header_CE3", "Item"), "107");
}

TEST_F(Chooser, WritesTheCategoryBeforeTheItem) {
  Choose(1, 4);
  EXPECT_EQ(station.disk.Get(state.IniFile), "[Header3]\r\nCat=Tune\r\nItem=4\r\n");
}

TEST_F(Chooser, CategoryAndItemComeIntoTheFileByOneReplacement) {
  Choose(2, 3);
  const test::DiskCalls calls;
  Choose(1, 4);
  EXPECT_EQ(test::DiskCalls::Count("rename "), 1);
  EXPECT_EQ(test::DiskCalls::Count("fsync "), 2) << "the file and its folder";
  EXPECT_EQ(station.disk.Get(state.IniFile), "[Header3]\r\nCat=Tune\r\nItem=4\r\n");
}

TEST_F(Chooser, OfTuneRowsWithEqualLabelsTheLastIsStored) {
  state.catalogues.TuneItems[155].Name = state.catalogues.TuneItems[3].Name;
  Choose(1, 3);
  EXPECT_EQ(Ini("Header3", "Item"), "155");
}

TEST_F(Chooser, TuneLabelsAreComparedWithCase) {
  ColumnChooser chooser = Open();
  chooser.Items[0] = "mass1(sense)";
  chooser.ListIndex = 0;
  ColumnChooserOK(state, station.services, chooser);
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "Select List Item!");
  EXPECT_TRUE(chooser.Unloaded);
  EXPECT_FALSE(station.disk.Has(state.IniFile)) << "nothing is written";
}

TEST_F(Chooser, CeModeAndNormalModeKeepSeparateColumns) {
  Choose(1, 10);
  state.CEMode = true;
  Choose(2, 5);
  EXPECT_EQ(Ini("Header3", "Cat"), "Tune");
  EXPECT_EQ(Ini("Header3", "Item"), "10");
  EXPECT_EQ(Ini("Header_CE3", "Cat"), "Meter");
  state.CEMode = false;
  Choose(1, 11);
  EXPECT_EQ(Ini("Header_CE3", "Item"), "5");
}

TEST_F(Chooser, TheSameRowMayStandInSeveralColumns) {
  for (std::int16_t column = 3; column <= 8; ++column) {
    state.ChangeColumn = column;
    Choose(1, 106);
    EXPECT_EQ(Ini("Header" + std::to_string(column), "Item"), "106");
  }
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST_F(Chooser, CancelUnloadsAndWritesNothing) {
  ColumnChooser chooser = Open();
  chooser.ListIndex = 3;
  ColumnChooserCancel(chooser);
  EXPECT_TRUE(chooser.Unloaded);
  EXPECT_FALSE(station.disk.Has(state.IniFile));
}

TEST_F(Chooser, HelpAsksForItsTopicByMode) {
  EXPECT_EQ(static_cast<int>(ColumnChooserHelpTopic(state)), 16704);
  state.CEMode = true;
  EXPECT_EQ(static_cast<int>(ColumnChooserHelpTopic(state)), 16705);
}

TEST_F(Chooser, ThePrefixOfAnEntryIsNotInTheColumnHeader) {
  EXPECT_EQ(FillAnalogChoices(state.catalogues)[107], "Lumarin:Extract");
  FillAnalogList(state, 1, "Analog", 107);
  EXPECT_EQ(state.ListView1.Column(3).Text, "Extract (V)");
}

TEST_F(Chooser, TheListIsRebuiltAfterOkAndAfterCancel) {
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.disk.Put(station.InLog("26111500", "paramvar.mac"), "XPOS=5.5\r\n");
  Init_FileList(state, station.services);
  EXPECT_EQ(state.ListView1.Column(4).Text, "Item 2");
  station.forms.on_change_item = [&] { Choose(1, 106); };
  ListView1_ColumnClick(state, station.services, 4);
  EXPECT_EQ(state.ListView1.Column(4).Text, "Smpl Depth (mm)");
  EXPECT_EQ(state.ListView1.Row(1).SubItem(3), "5.5");

  station.MakeLog("26111501", "11/15/2026 06:09:59");
  station.forms.on_change_item = [&] {
    ColumnChooser chooser = Open();
    ColumnChooserCancel(chooser);
  };
  ListView1_ColumnClick(state, station.services, 4);
  EXPECT_EQ(state.ListView1.Rows.size(), 2u);
  EXPECT_EQ(state.ListView1.Column(4).Text, "Smpl Depth (mm)");
}

TEST_F(Chooser, AnAnalogCategoryInANormalSectionStillFills) {
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.disk.Put(station.InLog("26111500", "aall.txt"), "21.4,22\r\n");
  station.disk.Put(state.IniFile, "[Header3]\r\nCat=Analog\r\nItem=0\r\n");
  Init_FileList(state, station.services);
  EXPECT_EQ(state.ListView1.Column(3).Text, "Inlet Temp (degC)");
  EXPECT_EQ(state.ListView1.Row(1).SubItem(2), "21");
}

TEST_F(Chooser, ACategoryInAnotherCaseIsUnknownAndTheColumnKeepsWhatItHad) {
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.disk.Put(station.InLog("26111500", "auser.txt"), "21.4,22\r\n");
  Init_FileList(state, station.services);
  for (const char* category : {"meter", "METER", "Meters", "x"}) {
    station.disk.Put(state.IniFile, std::string("[Header3]\r\nCat=") + category + "\r\nItem=0\r\n");
    state.ListView1.Column(3).Text = "before";
    Init_FileList(state, station.services);
    EXPECT_EQ(state.ListView1.Column(3).Text, "before") << category;
    EXPECT_EQ(state.ListView1.Row(1).SubItem(2), "") << category;
  }
}

TEST_F(Chooser, TheOtherCategoriesAreComparedWithCaseToo) {
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.disk.Put(station.InLog("26111500", "paramvar.mac"), "XPOS=5.5\r\n");
  station.disk.Put(station.InLog("26111500", "aall.txt"), Numbers(215));
  for (const char* category : {"tune", "TUNE", "analog", "ANALOG"}) {
    station.disk.Put(state.IniFile,
                     std::string("[Header3]\r\nCat=") + category + "\r\nItem=106\r\n");
    state.ListView1.Column(3).Text = "before";
    Init_FileList(state, station.services);
    EXPECT_EQ(state.ListView1.Column(3).Text, "before") << category;
    EXPECT_EQ(state.ListView1.Row(1).SubItem(2), "") << category;
  }
}

TEST_F(Chooser, ANegativeItemIsRow0) {
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  station.disk.Put(station.InLog("26111500", "auser.txt"), "21.4,22\r\n");
  station.disk.Put(state.IniFile, "[Header3]\r\nCat=Meter\r\nItem=-5\r\n");
  Init_FileList(state, station.services);
  EXPECT_EQ(state.ListView1.Column(3).Text, "Inlet Temp (degC)");
  EXPECT_EQ(state.ListView1.Row(1).SubItem(2), "21");
}

TEST_F(Chooser, EveryControlLiesInItsContainerAndHasANameOfItsOwn) {
  const ColumnChooser chooser;
  const auto inside = [](const Control& control, const Control& container) {
    return control.Place.Left >= 0 && control.Place.Top >= 0 &&
           control.Place.Left + control.Place.Width <= container.Place.Width &&
           control.Place.Top + control.Place.Height <= container.Place.Height;
  };
  for (const Control* control :
       {&chooser.Frame1, &chooser.List1, &chooser.cmdOK, &chooser.cmdCancel, &chooser.cmdHelp}) {
    EXPECT_TRUE(inside(*control, chooser.Window)) << control->Name;
  }
  for (const Control* control : {&chooser.Option1, &chooser.Option2, &chooser.Option3}) {
    EXPECT_TRUE(inside(*control, chooser.Frame1)) << control->Name;
  }
}

}  // namespace
}  // namespace logbook
