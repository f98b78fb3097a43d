// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/ColumnValues.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "catalogue/OptionGating.h"
#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/TestMachine.h"
#include "text/NumberFormat.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using test::ErrorOf;

// Numbers 0.5, 1.5, 2.5 ... as a snapshot file.
std::string Numbers(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(i) + ".5\r\n";
  return text;
}

class ColumnValues : public testing::Test {
 protected:
  ColumnValues() {
    FillCatalogues(state.catalogues);
    state.LogRoot = "C:\\QUOREX\\maintain\\";
    machine.MakeFolders(state.LogRoot);
  }

  // Adds a log with these lines in section "OPTION"; returns its number.
  int AddLog(const std::string& options = {}) {
    const int log = ++state.LogCount;
    const std::string name = "2611150" + std::to_string(log);
    state.FileList[static_cast<std::size_t>(log)].Name = name;
    state.ListView1.Rows.push_back({});
    machine.Put(Path(log, "logfile.ini"), "[LogFile]\r\nDate=x\r\n[OPTION]\r\n" + options);
    return log;
  }

  std::string Path(int log, const std::string& file) {
    return state.LogRoot + state.FileList[static_cast<std::size_t>(log)].Name + "\\" + file;
  }

  void Put(int log, const std::string& file, const std::string& bytes) {
    machine.Put(Path(log, file), bytes);
  }

  std::string Cell(int log, int column = 1) { return state.ListView1.Row(log).SubItem(column + 1); }

  std::string Header(int column = 1) { return state.ListView1.Column(column + 2).Text; }

  std::string Meter(int item, int log = 1) {
    FillMeterList(state, 1, "Meter", item);
    return Cell(log);
  }

  std::string Analog(int item, int log = 1) {
    FillAnalogList(state, 1, "Analog", item);
    return Cell(log);
  }

  std::string Tune(int item, int log = 1) {
    FillTuneList(state, 1, "Tune", item);
    return Cell(log);
  }

  test::TestMachine machine;
  AppState state{machine.machine()};
};

TEST_F(ColumnValues, TheHeaderIsTheNameWithTheUnitBehindItIfThereIsOne) {
  AddLog();
  Meter(0);
  EXPECT_EQ(Header(), "Inlet Temp (degC)");
  Analog(107);
  EXPECT_EQ(Header(), "Extract (V)");
  Tune(60);
  EXPECT_EQ(Header(), "Mass(Doubly Charged)");
  Tune(0);
  EXPECT_EQ(Header(), "Mass1(Sense) (m/z)");
}

TEST_F(ColumnValues, AColumnFillsItsOwnHeaderAndSubItem) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(29));
  for (std::int16_t column = 1; column <= 6; ++column) {
    FillMeterList(state, column, "Meter", column + 1);
    EXPECT_EQ(Header(column), ColumnHeader(state.catalogues.MeterItems[column + 1u].Name,
                                           state.catalogues.MeterItems[column + 1u].Unit));
    EXPECT_EQ(Cell(log, 7), "") << "the comment stays";
  }
  EXPECT_EQ(Cell(log, 1), "3");
  EXPECT_EQ(Cell(log, 3), "4.50");
  EXPECT_EQ(Cell(log, 0), "") << "the folder name stays";
}

TEST_F(ColumnValues, TheRowNumberIsThePositionInTheFile) {
  const int first = AddLog("AFC=1\r\n"), second = AddLog("AFC=1\r\n");
  Put(first, "auser.txt", Numbers(29));
  std::string commas;
  for (int i = 0; i < 29; ++i) commas += (i > 0 ? "," : "") + std::to_string(i) + ".5";
  Put(second, "auser.txt", commas);
  for (const int item : {0, 4, 9, 16, 19, 28}) {
    EXPECT_EQ(Meter(item, first), Meter(item, second)) << item;
  }
  EXPECT_EQ(Meter(4, first), "4.50");
  EXPECT_EQ(Meter(28, first), "28.5");
}

TEST_F(ColumnValues, ADisabledRowReadsNotApplicableEvenWithoutItsFile) {
  const int log = AddLog();
  EXPECT_EQ(Meter(13, log), "N/A");
  EXPECT_EQ(Analog(43, log), "N/A");
}

TEST_F(ColumnValues, ALogWithoutItsSnapshotReadsNotApplicableInDisabledRowsAndIsEmptyInOthers) {
  const int log = AddLog();
  for (int item = 0; item < kAnalogRowCount; ++item) {
    state.ListView1.Row(log).SubItem(2).clear();
    const bool disabled =
        IsDisabledAnalogParam(state.catalogues, static_cast<std::int16_t>(item), LogOptions{});
    EXPECT_EQ(Analog(item, log), disabled ? "N/A" : "") << item;
  }
}

TEST_F(ColumnValues, ACellWithoutItsFileStaysAsItIs) {
  const int log = AddLog();
  state.ListView1.Row(log).SubItem(2) = "before";
  EXPECT_EQ(Meter(0, log), "before");
  EXPECT_EQ(Tune(0, log), "before");
}

TEST_F(ColumnValues, AFileWithTooFewNumbersGivesZeroInTheRowsFormat) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(10));
  EXPECT_EQ(Meter(16, log), "0.00e0");
  EXPECT_EQ(Meter(19, log), "0");
}

// With Style B off, row 14 "Backing Press" applies.
TEST_F(ColumnValues, TenNumbersAndItem14GiveZeroInTheRowsFormat) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(10));
  EXPECT_EQ(Meter(14, log), "0.00e0");
}

TEST_F(ColumnValues, AnEmptyFileGivesZero) {
  const int log = AddLog();
  Put(log, "auser.txt", "");
  EXPECT_EQ(Meter(0, log), "0");
}

TEST_F(ColumnValues, AValueDoesNotLeakIntoTheNextLog) {
  const int full = AddLog(), empty = AddLog();
  Put(full, "auser.txt", Numbers(29));
  Put(empty, "auser.txt", "");
  Meter(4);
  EXPECT_EQ(Cell(full), "4.50");
  EXPECT_EQ(Cell(empty), "0.00");
}

TEST_F(ColumnValues, MoreNumbersThanRowsAreIgnored) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(400));
  EXPECT_EQ(Meter(4, log), "4.50");
}

TEST_F(ColumnValues, FieldsThatAreNoNumbersReadAsZero) {
  const int log = AddLog();
  Put(log, "auser.txt", "x,1e999,7\r\n\r\n5,");
  EXPECT_EQ(Meter(0, log), "0");
  EXPECT_EQ(Meter(1, log), "0");
  EXPECT_EQ(Meter(2, log), "7");
  EXPECT_EQ(Meter(3, log), "0");
  EXPECT_EQ(Meter(4, log), "5.00");
}

TEST_F(ColumnValues, TheFirstFileThatCannotBeOpenedEndsTheFill) {
  const int log = AddLog();
  machine.MakeFolders(Path(log, "auser.txt"));
  EXPECT_EQ(ErrorOf([&] { Meter(0); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(Cell(log), "");
}

TEST_F(ColumnValues, AfterTheFirstOpenedFileAnUnopenableOneCountsAsZero) {
  const int good = AddLog(), bad = AddLog();
  Put(good, "auser.txt", Numbers(29));
  machine.MakeFolders(Path(bad, "auser.txt"));
  EXPECT_EQ(Meter(4, bad), "0.00");
  EXPECT_EQ(Cell(good), "4.50");
}

TEST_F(ColumnValues, AReadErrorInTheFirstFileCountsAsZeroAndTheFillGoesOn) {
  const int bad = AddLog(), good = AddLog(), folder = AddLog();
  Put(bad, "auser.txt", Numbers(29));
  Put(good, "auser.txt", Numbers(29));
  machine.MakeFolders(Path(folder, "auser.txt"));
  const test::DiskCalls calls;
  test::DiskCalls::FailReads(machine.Native(Path(bad, "auser.txt")), 0);
  EXPECT_EQ(Meter(4, bad), "0.00");
  EXPECT_EQ(Cell(good), "4.50");
  EXPECT_EQ(Cell(folder), "0.00") << "the trap is set by the first file that was opened";
}

TEST_F(ColumnValues, AValueReadBeforeAReadErrorCounts) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(29));
  const test::DiskCalls calls;
  // Behind the carriage return of row 4.
  test::DiskCalls::FailReads(machine.Native(Path(log, "auser.txt")), 4 * 5 + 4);
  EXPECT_EQ(Meter(4, log), "4.50");
  EXPECT_EQ(Meter(5, log), "0.00");
}

TEST_F(ColumnValues, AnotherLogThatDiffersInCaseIsNotTakenForOneThatHasVanished) {
  const int log = AddLog();
  machine.Put(state.LogRoot + "alpha\\auser.txt", Numbers(29));
  machine.Put(state.LogRoot + "alpha\\paramvar.mac", "XPOS=1\r\n");
  state.FileList[1].Name = "Alpha";
  EXPECT_EQ(Meter(4, log), "");
  EXPECT_EQ(Tune(106, log), "");
  state.FileList[1].Name = "alpha";
  EXPECT_EQ(Meter(4, log), "4.50");
  EXPECT_EQ(Tune(106, log), "1.0");
}

TEST_F(ColumnValues, AnUnfilledRowHasNoLabelAndAnEmptyPicture) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(31));
  EXPECT_EQ(Meter(30, log), "");
  EXPECT_EQ(Header(), "");
}

TEST_F(ColumnValues, AnItemOutsideItsCatalogueRaisesBeforeAnythingIsWritten) {
  const int log = AddLog("LENS=1\r\n");
  state.ListView1.Column(3).Text = "header";
  state.ListView1.Row(log).SubItem(2) = "cell";
  for (const int item : {-1, 31, 32767, -32768, 100000}) {
    EXPECT_EQ(ErrorOf([&] { Meter(item); }), ErrorNumber::kSubscriptOutOfRange) << item;
  }
  for (const int item : {-1, 251}) {
    EXPECT_EQ(ErrorOf([&] { Analog(item); }), ErrorNumber::kSubscriptOutOfRange) << item;
  }
  for (const int item : {-1, 171}) {
    EXPECT_EQ(ErrorOf([&] { Tune(item); }), ErrorNumber::kSubscriptOutOfRange) << item;
  }
  EXPECT_EQ(Header(), "header");
  EXPECT_EQ(Cell(log), "cell");
}

TEST_F(ColumnValues, ATuneItemOfTheUnfilledRowsOpensTheFolderItself) {
  AddLog();
  for (int item = 163; item <= 170; ++item) {
    EXPECT_EQ(ErrorOf([&] { Tune(item); }), ErrorNumber::kPathFileAccess) << item;
  }
}

TEST_F(ColumnValues, ATuneItemOfTheUnfilledRowsIsHarmlessWithoutLogs) {
  FillTuneList(state, 1, "Tune", 170);
  EXPECT_EQ(Header(), "");
}

TEST_F(ColumnValues, ALogWithoutMacroFilesHasEmptyTuneCellsAlsoInDisabledRows) {
  const int log = AddLog();
  for (int item = 0; item < kTuneRowCount; ++item) EXPECT_EQ(Tune(item, log), "") << item;
}

TEST_F(ColumnValues, ATuneValueIsFoundByItsVariable) {
  const int log = AddLog();
  Put(log, "PARAMVAR.MAC", "XPOS=5.55\r\nYPOS=-1\r\nZPOS = 0.25 mm\r\n");
  EXPECT_EQ(Tune(106, log), "5.6");
  EXPECT_EQ(Tune(107, log), "-1.0");
  EXPECT_EQ(Tune(108, log), "0.3");
}

TEST_F(ColumnValues, PulseHvPrintsOneWhateverItsValue) {
  const int log = AddLog();
  Put(log, "paramvar.mac", "PLHV=1234\r\n");
  EXPECT_EQ(Tune(124, log), "1");
}

TEST_F(ColumnValues, TheSecondNameOfASensitivityFileIsReadWhereTheFirstIsMissing) {
  const int log = AddLog();
  Put(log, "SENSEVA2.MAC", "SenseMass[1]=7\r\n");
  EXPECT_EQ(Tune(0, log), "7");
  Put(log, "sensevar.mac", "SenseMass[1]=59\r\n");
  EXPECT_EQ(Tune(0, log), "59");
  Put(log, "OTHERVA2.MAC", "OxideRatioCount=1.234\r\n");
  EXPECT_EQ(Tune(63, log), "1.23");
}

TEST_F(ColumnValues, ALineThatIsMissingLeavesTheCellEmptyWhateverTheOptionsSay) {
  const int log = AddLog();
  Put(log, "paramvar.mac", "XPOS=1\r\n");
  EXPECT_EQ(Tune(125, log), "") << "a Lumarin row in a plain lens log";
  EXPECT_EQ(Tune(133, log), "") << "a reaction cell row";
  EXPECT_EQ(Tune(145, log), "") << "the instrument name";
}

TEST_F(ColumnValues, TheLastOfTwoLinesCounts) {
  const int log = AddLog();
  Put(log, "paramvar.mac", "XPOS=1\r\nXPOS=2\r\n");
  EXPECT_EQ(Tune(106, log), "2.0");
}

TEST_F(ColumnValues, OptionalGasTakesALineOfOptColopgsForItsOwn) {
  const int log = AddLog();
  Put(log, "paramvar.mac", "OPGS=20\r\nOPT_COLOPGS=1\r\n");
  EXPECT_EQ(Tune(111, log), "1.0");
}

TEST_F(ColumnValues, OfTheFourLensFamiliesOnlyTheLogsOwnHasValues) {
  const std::vector<std::string> options = {"", "LENS=1\r\n", "LENS=1\r\nLENS2=1\r\n",
                                            "LENS=1\r\nLENS2=1\r\nLENS3=1\r\n"};
  const std::vector<int> items = {112, 125, 136, 146};
  for (const std::string& option : options) {
    Put(AddLog(option), "paramvar.mac", "EXT1=1\r\nOEXT=2\r\nPEX1=3\r\nGEX1=4\r\n");
  }
  for (std::size_t family = 0; family < items.size(); ++family) {
    Tune(items[family]);
    for (int log = 1; log <= 4; ++log) {
      const bool own = log == static_cast<int>(family) + 1;
      EXPECT_EQ(Cell(log), own ? std::to_string(log) + ".0" : "N/A") << family << ' ' << log;
    }
  }
}

TEST_F(ColumnValues, ANegativeSensitivityValueReadsNotApplicableAndANegativeBackgroundDoesNot) {
  const int log = AddLog();
  Put(log, "sensevar.mac", "SenseMass[1]=-1\r\n");
  Put(log, "othervar.mac", "BackMass[1]=-1\r\n");
  EXPECT_EQ(Tune(0, log), "N/A");
  EXPECT_EQ(Tune(64, log), "-1");
}

TEST_F(ColumnValues, AReactionCellGasNeedsLensAndAClmdLineThatIsNotZero) {
  struct Case {
    const char* options;
    const char* clmd;
    const char* cell;
  };
  const Case cases[] = {{"LENS=1\r\n", "", "N/A"},
                        {"LENS=1\r\n", "CLMD=0\r\n", "N/A"},
                        {"LENS=1\r\n", "CLMD=1\r\n", "4.5"},
                        {"", "CLMD=1\r\n", "N/A"},
                        {"LENS=2\r\n", "CLMD=1\r\n", "4.5"},
                        {"LENS=1\r\n", "CLMD=0.5\r\n", "N/A"},
                        {"LENS=1\r\n", "CLMD=1.5\r\n", "4.5"}};
  for (const Case& each : cases) {
    const int log = AddLog(each.options);
    Put(log, "paramvar.mac", std::string("CLHE=4.5\r\n") + each.clmd);
    EXPECT_EQ(Tune(134, log), each.cell) << each.options << each.clmd;
  }
}

TEST_F(ColumnValues, TheDoublyChargedMassNeedsAnOptColopgsLineThatIsNotZero) {
  const int without = AddLog(), zero = AddLog(), one = AddLog();
  Put(without, "othervar.mac", "DblRatioMass$=\"140/70\"\r\n");
  Put(zero, "othervar.mac", "DblRatioMass$=\"140/70\"\r\nOPT_COLOPGS=0\r\n");
  Put(one, "othervar.mac", "DblRatioMass$=\"140/70\"\r\nOPT_COLOPGS=1\r\n");
  Tune(60);
  EXPECT_EQ(Cell(without), "N/A");
  EXPECT_EQ(Cell(zero), "N/A");
  EXPECT_EQ(Cell(one), "140/70");
  Put(without, "othervar.mac", "OxideRatioMass$=\"156/140\"\r\n");
  EXPECT_EQ(Tune(62, without), "156/140") << "row 62 is not tied to that line";
}

TEST_F(ColumnValues, TheInstrumentNameNeedsSecurityOne) {
  const int off = AddLog(), on = AddLog("Security=1\r\n"), two = AddLog("Security=2\r\n");
  for (const int log : {off, on, two}) {
    Put(log, "paramvar.mac", "InstrumentName$=\"Bench 3\"\r\n");
  }
  Tune(145);
  EXPECT_EQ(Cell(off), "N/A");
  EXPECT_EQ(Cell(on), "Bench 3");
  EXPECT_EQ(Cell(two), "N/A");
}

TEST_F(ColumnValues, TwoAdjacentQuotesGiveAnEmptyCellOrNotApplicableWithoutSecurity) {
  const int on = AddLog("Security=1\r\n"), off = AddLog();
  for (const int log : {on, off}) {
    Put(log, "paramvar.mac", "InstrumentName$=\"\"\r\n");
    state.ListView1.Row(log).SubItem(2) = "before";
  }
  Tune(145);
  EXPECT_EQ(Cell(on), "");
  EXPECT_EQ(Cell(off), "N/A");
}

TEST_F(ColumnValues, ATextWithoutItsQuotesEndsTheFill) {
  const int log = AddLog("Security=1\r\n");
  Put(log, "paramvar.mac", "InstrumentName$=Bench 3\r\n");
  EXPECT_EQ(ErrorOf([&] { Tune(145); }), ErrorNumber::kInvalidProcedureCall);
  Put(log, "paramvar.mac", "InstrumentName$=\"Bench 3\r\n");
  EXPECT_EQ(ErrorOf([&] { Tune(145); }), ErrorNumber::kInvalidProcedureCall);
}

TEST_F(ColumnValues, AFlagThatDoesNotFitSixteenBitsEndsTheFillOfAnyRowOfItsFile) {
  const int log = AddLog();
  Put(log, "paramvar.mac", "XPOS=1\r\nCLMD=40000\r\n");
  EXPECT_EQ(ErrorOf([&] { Tune(106); }), ErrorNumber::kOverflow);
  Put(log, "paramvar.mac", "XPOS=1\r\nOPT_COLOPGS=40000\r\n");
  EXPECT_EQ(ErrorOf([&] { Tune(106); }), ErrorNumber::kOverflow);
  EXPECT_EQ(ErrorOf([&] { Tune(107); }), ErrorNumber::kOverflow) << "a row without a line";
  Put(log, "paramvar.mac", "CLMD=40000\r\n");
  EXPECT_EQ(ErrorOf([&] { Tune(107); }), ErrorNumber::kOverflow) << "a row without a line";
}

TEST_F(ColumnValues, ASensitivityValueOfZeroIsAValue) {
  const int log = AddLog();
  for (const char* zero : {"0", "-0", "0.0"}) {
    Put(log, "sensevar.mac", "SenseMass[1]=" + std::string(zero) + "\r\n");
    EXPECT_NE(Tune(0, log), "N/A") << zero;
    EXPECT_NE(Tune(0, log), "") << zero;
  }
}

TEST_F(ColumnValues, AValueTooLargeForANumberEndsTheFill) {
  const int log = AddLog();
  Put(log, "paramvar.mac", "XPOS=1e400\r\n");
  EXPECT_EQ(ErrorOf([&] { Tune(106); }), ErrorNumber::kOverflow);
  EXPECT_EQ(Cell(log), "");
}

// The rule about negative values belongs to one group, not to a sign or a unit.
TEST_F(ColumnValues, OfTheTuneRowsOnlyThoseOfTheSensitivityTestRefuseANegativeValue) {
  const int log = AddLog("LENS=1\r\nLENS2=1\r\nLENS3=1\r\nSecurity=1\r\n");
  for (const TuneItemRecord& item : state.catalogues.TuneItems) {
    if (item.Format.empty()) continue;
    const int row = static_cast<int>(&item - state.catalogues.TuneItems.data());
    Put(log, item.File, item.Var + "=-2\r\nCLMD=1\r\n");
    const bool other_family = item.Group == 5 || item.Group == 7 || item.Group == 9;
    const std::string expected = row == 124 ? "1" : FormatNumber(-2, item.Format);
    EXPECT_EQ(Tune(row, log), other_family || item.Group == 1 ? "N/A" : expected) << row;
  }
}

TEST_F(ColumnValues, FilesAndVariablesAreFoundInAnotherCase) {
  const int log = AddLog();
  Put(log, "Paramvar.MAC", "xpos=5\r\n");
  Put(log, "OtherVA2.mac", "oxideratiocount=1.5\r\n");
  EXPECT_EQ(Tune(106, log), "5.0");
  EXPECT_EQ(Tune(63, log), "1.50");
}

TEST_F(ColumnValues, AMacroFileThatCannotBeOpenedEndsTheFill) {
  const int log = AddLog();
  machine.MakeFolders(Path(log, "paramvar.mac"));
  EXPECT_EQ(ErrorOf([&] { Tune(106); }), ErrorNumber::kPathFileAccess);
}

TEST_F(ColumnValues, ACrossedRowReadsFromTheFileThatItNames) {
  const int log = AddLog();
  Put(log, "resovar.mac", "RESOINTEG=0.1\r\n");
  Put(log, "sensevar.mac", "SENSEINTEG=0.2\r\n");
  EXPECT_EQ(Tune(155, log), "0.1000");
  EXPECT_EQ(Tune(157, log), "0.2000");
}

TEST_F(ColumnValues, AChangedFileShowsAtTheNextFill) {
  const int log = AddLog();
  Put(log, "auser.txt", Numbers(29));
  Put(log, "paramvar.mac", "XPOS=1\r\n");
  EXPECT_EQ(Meter(13, log), "N/A");
  EXPECT_EQ(Meter(4, log), "4.50");
  EXPECT_EQ(Tune(106, log), "1.0");
  machine.Put(Path(log, "logfile.ini"), "[OPTION]\r\nSC=1\r\n");
  Put(log, "auser.txt", "9,9,9,9,9\r\n");
  Put(log, "paramvar.mac", "XPOS=2\r\n");
  EXPECT_EQ(Meter(13, log), "0.0");
  EXPECT_EQ(Meter(4, log), "9.00");
  EXPECT_EQ(Tune(106, log), "2.0");
}

TEST_F(ColumnValues, EveryPrefixOfASnapshotGivesACell) {
  const int log = AddLog();
  const std::string numbers = "1.5,2.5\r\n3.5 4.5\r\n5.5\r\n";
  for (std::size_t length = 0; length <= numbers.size(); ++length) {
    Put(log, "auser.txt", numbers.substr(0, length));
    EXPECT_NE(Meter(4, log), "") << length;
  }
  const std::string macro = "CLMD=1\r\nXPOS=5.5\r\nOPT_COLOPGS=1\r\n";
  for (std::size_t length = 0; length <= macro.size(); ++length) {
    Put(log, "paramvar.mac", macro.substr(0, length));
    state.ListView1.Row(log).SubItem(2).clear();
    EXPECT_EQ(Tune(106, log).empty(), length < 13) << length;
  }
}

TEST_F(ColumnValues, BinarySnapshotsGiveCellsWithoutFailing) {
  const int log = AddLog();
  std::string bytes;
  for (int i = 0; i < 300000; ++i) bytes += static_cast<char>((i * 2654435761u) >> 24);
  Put(log, "auser.txt", bytes);
  Put(log, "paramvar.mac", bytes);
  EXPECT_NE(Meter(4, log), "");
  EXPECT_NO_THROW(Tune(106, log));
}

TEST_F(ColumnValues, SnapshotsOfAHundredMegabytesAreRead) {
  const int log = AddLog();
  for (const char* file : {"auser.txt", "paramvar.mac"}) {
    Put(log, file, "1,2,XPOS=3\r\n");
    fs::resize_file(machine.Native(Path(log, file)), 100 * 1024 * 1024);
  }
  EXPECT_EQ(Meter(1, log), "2");
  EXPECT_EQ(Tune(106, log), "3.0");
}

}  // namespace
}  // namespace logbook
