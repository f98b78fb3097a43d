// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/TuneReport.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/Viewing.h"
#include "text/CSVMan.h"

namespace logbook {
namespace {

using test::Viewing;

constexpr const char* kEmptyTuneBin = "\r\n\r\n\r\n";

struct Tuning : Viewing {
  // The cells by their labels.
  std::map<std::string, std::string> Cells() {
    std::map<std::string, std::string> cells;
    for (const TuneCell& column : List()) cells[column.Name] = column.Value;
    return cells;
  }
  std::vector<TuneCell> List() {
    return TuneCells(state.machine, state.catalogues, view.LogFolderPath);
  }
  void PutAllFiles() {
    for (const char* file : {"sensevar.mac", "othervar.mac", "resovar.mac", "paramvar.mac"})
      Put(file, "");
  }
};

TEST(TuneReport, ThePaneShowsTheHostsTextLineByLine) {
  Tuning tuning;
  tuning.Put("tune.rpt", "Tune Report\r\n\r\n\tSensitivity\nlast");
  ViewTuneReport(tuning.state, tuning.view);
  EXPECT_EQ(tuning.view.ReportText, "Tune Report\r\n\r\n\tSensitivity\r\nlast\r\n");
}

TEST(TuneReport, ThePaneHasNoLimitOf64KB) {
  Tuning tuning;
  std::string text;
  while (text.size() < 100000) text += "a line of the report\r\n";
  tuning.Put("tune.rpt", text);
  ViewTuneReport(tuning.state, tuning.view);
  EXPECT_EQ(tuning.view.ReportText, text);
  EXPECT_TRUE(tuning.messages.shown.empty());
}

TEST(TuneReport, ALogWithoutReportTextShowsAnEmptyPaneAndStillWritesTheExtract) {
  Tuning tuning;
  tuning.PutAllFiles();
  tuning.view.ReportText = "older";
  tuning.Choose(&LogView::mnuTune);
  EXPECT_EQ(tuning.view.ReportText, "");
  EXPECT_EQ(tuning.Get("tune.bin"), TuneBinText(tuning.List()));
  EXPECT_EQ(tuning.state.ViewMode, 1);
  tuning.events.on_deliver = [&](int) { tuning.cell.text = "0"; };
  PrintTuneReport(tuning.state, tuning.services, tuning.view);
  EXPECT_EQ(tuning.cell.written, std::vector<std::string>{"2"});
}

TEST(TuneBinReport, AllFourFilesGiveACellForEachOfThe163Rows) {
  Tuning tuning;
  tuning.PutAllFiles();
  const std::vector<TuneCell> cells = tuning.List();
  ASSERT_EQ(cells.size(), 163U);
  for (std::size_t row = 0; row < cells.size(); ++row) {
    EXPECT_EQ(cells[row].Name, tuning.state.catalogues.TuneItems[row].Name);
    EXPECT_EQ(cells[row].Value, "") << row;
  }
}

TEST(TuneBinReport, ALogWithoutMacroFilesGivesThreeEmptyLines) {
  Tuning tuning;
  tuning.Put("tune.bin", "older");
  CreateTuneText(tuning.state, tuning.view);
  EXPECT_EQ(tuning.Get("tune.bin"), kEmptyTuneBin);
}

TEST(TuneBinReport, AMissingFileRemovesItsRowsFromBothRows) {
  const std::map<std::string, std::size_t> rows = {
      {"sensevar.mac", 62}, {"othervar.mac", 34}, {"resovar.mac", 14}, {"paramvar.mac", 53}};
  for (const auto& [file, count] : rows) {
    Tuning tuning;
    tuning.Put(file, "");
    EXPECT_EQ(tuning.List().size(), count) << file;
  }
}

TEST(TuneBinReport, TheSecondNameIsUsedWhereTheFirstIsMissing) {
  Tuning tuning;
  tuning.Put("SENSEVA2.MAC", "SenseMass[1]=7\r\n");
  tuning.Put("OTHERVA2.MAC", "DblRatioCount=1.5\r\n");
  EXPECT_EQ(tuning.Cells()["Mass1(Sense)"], "7");
  EXPECT_EQ(tuning.Cells()["Doubly Charged"], "1.50");
  EXPECT_EQ(tuning.List().size(), 62U + 34U);
  tuning.Put("SENSEVAR.MAC", "SenseMass[1]=9\r\n");
  EXPECT_EQ(tuning.Cells()["Mass1(Sense)"], "9");
}

TEST(TuneBinReport, BothNamesMissingLeaveNoneOfThe62Cells) {
  Tuning tuning;
  tuning.PutAllFiles();
  tuning.disk.Put(Viewing::File("keep.txt"), "");
  std::remove(tuning.disk.Native(Viewing::File("sensevar.mac")).c_str());
  EXPECT_EQ(tuning.List().size(), 163U - 62U);
  EXPECT_EQ(tuning.Cells().count("Mass1(Sense)"), 0U);
}

TEST(TuneBinReport, AValueStandsInItsFormat) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "XPOS=5.55\r\nCRGS= 1.005\r\nPLHV=999\r\nAXGA=1e-4\r\n");
  auto cells = tuning.Cells();
  EXPECT_EQ(cells["Smpl Depth"], "5.6");
  EXPECT_EQ(cells["Carrier Gas"], "1.01");
  EXPECT_EQ(cells["Pulse HV"], "1");
  EXPECT_EQ(cells["Axis Gain"], "0.0001");
}

TEST(TuneBinReport, ALineWithoutEqualSignIsNoValueLine) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "XPOS 5\r\n");
  EXPECT_EQ(tuning.Cells()["Smpl Depth"], "");
}

TEST(TuneBinReport, TheSecondOfTwoLinesCounts) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "XPOS=5\r\nYPOS=1\r\nXPOS=6\r\n");
  EXPECT_EQ(tuning.Cells()["Smpl Depth"], "6.0");
}

TEST(TuneBinReport, TheCaseOfAVariableDoesNotMatter) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "xpos=5\r\n");
  EXPECT_EQ(tuning.Cells()["Smpl Depth"], "5.0");
}

TEST(TuneBinReport, OpgsAlsoMatchesALineOfTheFlag) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "OPGS=12\r\nOPT_COLOPGS=1\r\n");
  EXPECT_EQ(tuning.Cells()["Optional Gas"], "1.0");
  tuning.Put("paramvar.mac", "OPT_COLOPGS=1\r\nOPGS=12\r\n");
  EXPECT_EQ(tuning.Cells()["Optional Gas"], "12.0");
}

TEST(TuneBinReport, ANegativeSensitivityValueIsNotApplicableAndANegativeBackgroundIsANumber) {
  Tuning tuning;
  tuning.Put("sensevar.mac", "SenseMass[3]=-1\r\nSenseMass[4]=0\r\nSENSEINTEG=-1\r\n");
  tuning.Put("othervar.mac", "BackMass[1]=-1\r\nBackMean[1]=-1\r\n");
  tuning.Put("resovar.mac", "RESOINTEG=-0.5\r\n");
  auto cells = tuning.Cells();
  EXPECT_EQ(cells["Mass3(Sense)"], "N/A");
  EXPECT_EQ(cells["Mass4(Sense)"], "0");
  EXPECT_EQ(cells["Mass1(Background)"], "-1");
  EXPECT_EQ(cells["Background(Mass1)"], "-1.0");
  EXPECT_EQ(cells["Integration Time(Sense)"], "N/A");
  EXPECT_EQ(cells["Integration Time(Axis/Reso)"], "-1.0000");
}

TEST(TuneBinReport, ALensRowOfTheWrongFamilyIsNotApplicableAndKeepsItsLabel) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "EXT1=1\r\nOEXT=2\r\nPEX1=3\r\nGEX1=4\r\n");
  const char* names[] = {"Extract 1", "Extract(Lumarin)", "Extract 1(Varion TRZ(cs))",
                         "Extract 1(Varion TRZ(ce))"};
  const std::map<std::string, std::string> families[] = {
      {},
      {{"LENS", "1"}},
      {{"LENS", "1"}, {"LENS2", "1"}},
      {{"LENS", "1"}, {"LENS2", "1"}, {"LENS3", "1"}}};
  const char* values[] = {"1.0", "2.0", "3.0", "4.0"};
  for (std::size_t family = 0; family < 4; ++family) {
    tuning.SetOptions(families[family]);
    auto cells = tuning.Cells();
    for (std::size_t row = 0; row < 4; ++row) {
      ASSERT_EQ(cells.count(names[row]), 1U);
      EXPECT_EQ(cells[names[row]], row == family ? values[row] : "N/A") << names[row];
    }
  }
}

TEST(TuneBinReport, ALensRowWithoutItsVariableIsEmptyAndNotNotApplicable) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "");
  EXPECT_EQ(tuning.Cells()["Extract(Lumarin)"], "");
}

TEST(TuneBinReport, ReactionCellRowsNeedALensAndTheFlag) {
  Tuning tuning;
  const auto gas = [&](const char* lens, const std::string& flag) {
    tuning.SetOptions({{"LENS", lens}});
    tuning.Put("paramvar.mac", "CLH2=3\r\n" + flag);
    return tuning.Cells()["H2 Gas(Reaction Cell)"];
  };
  EXPECT_EQ(gas("1", "CLMD=1\r\n"), "3.0");
  EXPECT_EQ(gas("2", "CLMD=-1\r\n"), "3.0");
  EXPECT_EQ(gas("0", "CLMD=1\r\n"), "N/A");
  EXPECT_EQ(gas("1", "CLMD=0\r\n"), "N/A");
  EXPECT_EQ(gas("1", ""), "N/A");
}

TEST(TuneBinReport, TheFlagIsRoundedToTheEvenNeighbour) {
  Tuning tuning;
  tuning.SetOptions({{"LENS", "1"}});
  const std::pair<const char*, const char*> cases[] = {
      {"0.5", "N/A"}, {"0.51", "3.0"}, {"1.5", "3.0"}, {"-0.5", "N/A"}, {"x", "N/A"}};
  for (const auto& [flag, cell] : cases) {
    tuning.Put("paramvar.mac", std::string("CLH2=3\r\nCLMD=") + flag + "\r\n");
    EXPECT_EQ(tuning.Cells()["H2 Gas(Reaction Cell)"], cell) << flag;
  }
}

TEST(TuneBinReport, AFlagCountsOnlyInTheFileOfTheRow) {
  Tuning tuning;
  tuning.SetOptions({{"LENS", "1"}});
  tuning.Put("paramvar.mac", "CLH2=3\r\n");
  tuning.Put("sensevar.mac", "CLMD=1\r\n");
  EXPECT_EQ(tuning.Cells()["H2 Gas(Reaction Cell)"], "N/A");
}

TEST(TuneBinReport, MassDoublyChargedNeedsTheFlagOfItsFile) {
  Tuning tuning;
  tuning.Put("othervar.mac", "DblRatioMass$=\"70/140\"\r\n");
  EXPECT_EQ(tuning.Cells()["Mass(Doubly Charged)"], "N/A");
  tuning.Put("othervar.mac", "DblRatioMass$=\"70/140\"\r\nOPT_COLOPGS=1\r\n");
  EXPECT_EQ(tuning.Cells()["Mass(Doubly Charged)"], "70/140");
  tuning.Put("othervar.mac", "DblRatioMass$=\"70/140\"\r\nOPT_COLOPGS=0\r\n");
  EXPECT_EQ(tuning.Cells()["Mass(Doubly Charged)"], "N/A");
}

TEST(TuneBinReport, ATextValueStandsBetweenTheFirstTwoDoubleQuotes) {
  Tuning tuning;
  tuning.Put("othervar.mac", "OxideRatioMass$ = x \"156/140\" \"b\"\r\n");
  tuning.Put("paramvar.mac", "InstrumentName$=\"\"\r\n");
  EXPECT_EQ(tuning.Cells()["Mass(Oxide)"], "156/140");
  EXPECT_EQ(tuning.Cells()["Instrument Name"], "");
}

TEST(TuneBinReport, TheInstrumentNameStandsThereWhateverTheOptionSecurity) {
  Tuning tuning;
  tuning.Put("paramvar.mac", "InstrumentName$=\"Bench 3\"\r\n");
  for (const char* security : {"0", "1"}) {
    tuning.SetOptions({{"Security", security}});
    EXPECT_EQ(tuning.Cells()["Instrument Name"], "Bench 3") << security;
  }
}

TEST(TuneBinReport, TheFlagOfRow60DecidesOverNoOtherRow) {
  Tuning tuning;
  tuning.Put("othervar.mac", "DblRatioCount=1.5\r\nOxideRatioMass$=\"156/140\"\r\n");
  tuning.Put("paramvar.mac", "OPGS=12\r\nCLOP=3\r\nCLMD=1\r\n");
  tuning.SetOptions({{"LENS", "1"}});
  EXPECT_EQ(tuning.Cells()["Doubly Charged"], "1.50");
  EXPECT_EQ(tuning.Cells()["Mass(Oxide)"], "156/140");
  EXPECT_EQ(tuning.Cells()["Optional Gas"], "12.0");
  EXPECT_EQ(tuning.Cells()["Optional Gas(Reaction Cell)"], "3");
}

// What ends the extract in silence, and leaves an older file.
TEST(TuneBinReport, AnErrorWritesNothingAndIsSilent) {
  const std::pair<const char*, const char*> files[] = {
      {"othervar.mac", "OxideRatioMass$=156/140\r\n"},    // no quotes
      {"othervar.mac", "OxideRatioMass$=\"156/140\r\n"},  // one quote
      {"paramvar.mac", "CLMD=32768\r\n"},                 // beyond 16 bits, though no row asks
      {"othervar.mac", "OPT_COLOPGS=-40000\r\n"},
      {"paramvar.mac", "XPOS=1e999\r\n"}};
  for (const auto& [file, bytes] : files) {
    Tuning tuning;
    tuning.Put(file, bytes);
    tuning.Put("tune.bin", "older");
    EXPECT_THROW(tuning.List(), RunTimeError) << bytes;
    tuning.Choose(&LogView::mnuTune);
    EXPECT_EQ(tuning.Get("tune.bin"), "older") << bytes;
    EXPECT_TRUE(tuning.messages.shown.empty());
    EXPECT_EQ(tuning.state.ViewMode, 1);
  }
}

TEST(TuneBinReport, ErrorsHaveTheNumbersOfTheirKind) {
  const auto error_of = [](const char* file, const char* bytes) {
    Tuning tuning;
    tuning.Put(file, bytes);
    try {
      tuning.List();
    } catch (const RunTimeError& error) {
      return static_cast<int>(error.Number());
    }
    return 0;
  };
  EXPECT_EQ(error_of("othervar.mac", "OxideRatioMass$=\"156\r\n"), 5);
  EXPECT_EQ(error_of("paramvar.mac", "CLMD=99999\r\n"), 6);
}

TEST(TuneBinReport, AMacroFileThatCannotBeOpenedWritesNothing) {
  Tuning tuning;
  tuning.disk.MakeFolders(Viewing::File("resovar.mac"));
  tuning.Put("tune.bin", "older");
  CreateTuneText(tuning.state, tuning.view);
  EXPECT_EQ(tuning.Get("tune.bin"), "older");
}

TEST(TuneBinReport, AFileThatCannotBeWrittenIsPassedOver) {
  Tuning tuning;
  tuning.disk.MakeFolders(Viewing::File("tune.bin"));
  tuning.view.ReportText = "stays";
  CreateTuneText(tuning.state, tuning.view);
  EXPECT_EQ(tuning.view.ReportText, "stays");
}

TEST(TuneBinReport, EveryPrefixOfAMacroFileGivesAllItsCellsOrAnError) {
  Tuning tuning;
  const std::string good = "OPT_COLOPGS=1\r\nDblRatioMass$=\"70/140\"\r\nDblRatioCount=1.25\r\n";
  for (std::size_t length = 0; length <= good.size(); ++length) {
    tuning.Put("othervar.mac", good.substr(0, length));
    try {
      EXPECT_EQ(tuning.List().size(), 34U) << length;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kInvalidProcedureCall) << length;
    }
  }
}

std::string HandedOver(Tuning& tuning) {
  std::string path;
  GetIniString(tuning.state.machine, "LogBook", "LogFileName", "none", path, tuning.state.IniFile);
  return path;
}

TEST(PrintTuneReport, TheFolderIsNotHandedOverUntilTheCellReadsZero) {
  Tuning tuning;
  tuning.cell.text = "5";
  tuning.events.on_deliver = [&](int number) {
    if (number < 4) {
      EXPECT_EQ(HandedOver(tuning), "none");
    }
    if (number == 4) tuning.cell.text = "0";
    if (number > 6) tuning.cell.text = "0";
  };
  PrintTuneReport(tuning.state, tuning.services, tuning.view);
  EXPECT_EQ(HandedOver(tuning), tuning.view.LogFolderPath);
  EXPECT_EQ(tuning.view.LogFolderPath.back(), '\\');
  EXPECT_EQ(tuning.cell.written, std::vector<std::string>{"2"});
  EXPECT_EQ(tuning.events.delivered, 7);
}

TEST(PrintTuneReport, APathThatCannotBeHandedOverIsPassedOver) {
  Tuning tuning;
  tuning.state.IniFile = "C:\\no folder\\logbook.ini";
  tuning.events.on_deliver = [&](int) { tuning.cell.text = "0"; };
  PrintTuneReport(tuning.state, tuning.services, tuning.view);
  EXPECT_EQ(tuning.cell.written, std::vector<std::string>{"2"});
  EXPECT_TRUE(tuning.messages.shown.empty());
}

TEST(PrintTuneReport, AnyOtherValueOfTheCellEndsTheWait) {
  for (const char* value : {"0", "1", "", "9"}) {
    Tuning tuning;
    tuning.cell.text = "0";
    tuning.events.on_deliver = [&](int) { tuning.cell.text = value; };
    PrintTuneReport(tuning.state, tuning.services, tuning.view);
    EXPECT_EQ(tuning.events.delivered, 1) << value;
  }
}

TEST(PrintTuneReport, TheCellIsComparedAsANumber) {
  Tuning tuning;
  tuning.cell.text = " 0.0 idle";
  tuning.events.on_deliver = [&](int number) { tuning.cell.text = number < 3 ? "2.0" : "0"; };
  PrintTuneReport(tuning.state, tuning.services, tuning.view);
  EXPECT_EQ(tuning.events.delivered, 3);
}

}  // namespace
}  // namespace logbook
