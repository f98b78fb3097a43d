// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/MacroFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

constexpr const char* kFolder = "C:\\logs\\26111500\\";
constexpr const char* kFile = "C:\\logs\\26111500\\paramvar.mac";

using test::ErrorOf;

class MacroFile : public testing::Test {
 protected:
  MacroLines Lines(std::string_view bytes, std::string_view var) {
    machine.Put(kFile, bytes);
    const MacroLines lines = ReadMacroLines(machine, kFile, var);
    EXPECT_EQ(FindMacroLines(ReadAssignments(machine, kFile), var), lines);
    return lines;
  }

  test::TestMachine machine;
};

TEST_F(MacroFile, IsFoundByItsFirstName) {
  machine.Put("C:\\logs\\26111500\\sensevar.mac", "");
  machine.Put("C:\\logs\\26111500\\SENSEVA2.MAC", "");
  EXPECT_EQ(FindMacroFile(machine, kFolder, "sensevar.mac"), "C:\\logs\\26111500\\sensevar.mac");
}

TEST_F(MacroFile, IsFoundInWhateverCaseTheHostWroteItsName) {
  machine.Put("C:\\logs\\26111500\\SENSEVAR.MAC", "SenseMass[1]=7\r\n");
  const auto path = FindMacroFile(machine, kFolder, "sensevar.mac");
  ASSERT_TRUE(path);
  EXPECT_EQ(ReadMacroLines(machine, *path, "SenseMass[1]").Value, "SenseMass[1]=7");
}

TEST_F(MacroFile, SensevarAndOthervarHaveASecondName) {
  machine.Put("C:\\logs\\26111500\\SENSEVA2.MAC", "");
  machine.Put("C:\\logs\\26111500\\OTHERVA2.MAC", "");
  EXPECT_EQ(FindMacroFile(machine, kFolder, "sensevar.mac"), "C:\\logs\\26111500\\SENSEVA2.MAC");
  EXPECT_EQ(FindMacroFile(machine, kFolder, "OtherVar.mac"), "C:\\logs\\26111500\\OTHERVA2.MAC");
}

TEST_F(MacroFile, ResovarAndParamvarHaveNoSecondName) {
  machine.Put("C:\\logs\\26111500\\RESOVA2.MAC", "");
  machine.Put("C:\\logs\\26111500\\PARAMVA2.MAC", "");
  EXPECT_EQ(FindMacroFile(machine, kFolder, "resovar.mac"), std::nullopt);
  EXPECT_EQ(FindMacroFile(machine, kFolder, "paramvar.mac"), std::nullopt);
}

TEST_F(MacroFile, IsNotFoundWhereNeitherNameExists) {
  machine.MakeFolders(kFolder);
  EXPECT_EQ(FindMacroFile(machine, kFolder, "sensevar.mac"), std::nullopt);
  EXPECT_EQ(FindMacroFile(machine, kFolder, "othervar.mac"), std::nullopt);
}

TEST_F(MacroFile, AnEmptyNameIsTheFolderWhichCannotBeRead) {
  machine.MakeFolders(kFolder);
  const auto path = FindMacroFile(machine, kFolder, "");
  ASSERT_TRUE(path);
  EXPECT_EQ(ErrorOf([&] { ReadMacroLines(machine, *path, ""); }), ErrorNumber::kPathFileAccess);
}

TEST_F(MacroFile, ALineThatHoldsTheVariableAndAnEqualSignIsTheValueLine) {
  EXPECT_EQ(Lines("ZPOS=1\r\nXPOS=5.5\r\nYPOS=2\r\n", "XPOS").Value, "XPOS=5.5");
}

TEST_F(MacroFile, ALineWithoutAnEqualSignIsNoValueLine) {
  EXPECT_EQ(Lines("XPOS 5\r\n", "XPOS").Value, "");
}

TEST_F(MacroFile, TheLastLineOfAKindCounts) {
  const MacroLines lines =
      Lines("XPOS=1\r\nCLMD=1\r\nOPT_COLOPGS=1\r\nXPOS=2\r\nCLMD=2\r\nOPT_COLOPGS=2\r\n", "XPOS");
  EXPECT_EQ(lines, (MacroLines{"XPOS=2", "OPT_COLOPGS=2", "CLMD=2"}));
}

TEST_F(MacroFile, CaseDoesNotCount) {
  EXPECT_EQ(Lines("xpos=5\r\nclmd=1\r\nopt_ColOpgs=2\r\n", "XPOS"),
            (MacroLines{"xpos=5", "opt_ColOpgs=2", "clmd=1"}));
}

TEST_F(MacroFile, ABracketKeepsMass1ApartFromMass11) {
  EXPECT_EQ(Lines("SenseMass[1]=7\r\nSenseMass[11]=89\r\n", "SenseMass[1]").Value,
            "SenseMass[1]=7");
}

TEST_F(MacroFile, OpgsAlsoMatchesALineOfOptColopgs) {
  const MacroLines lines = Lines("OPGS=20\r\nOPT_COLOPGS=1\r\n", "OPGS");
  EXPECT_EQ(lines.Value, "OPT_COLOPGS=1");
  EXPECT_EQ(lines.ColOpgs, "");
  EXPECT_EQ(Lines("OPT_COLOPGS=1\r\nOPGS=20\r\n", "OPGS").Value, "OPGS=20");
}

TEST_F(MacroFile, TheNameMayStandAnywhereInTheLine) {
  EXPECT_EQ(Lines("let a=XPOS\r\n", "XPOS").Value, "let a=XPOS");
  EXPECT_EQ(Lines("MYXPOS2=4\r\n", "XPOS").Value, "MYXPOS2=4");
}

TEST_F(MacroFile, LinesMayEndInLineFeedAloneAndTheLastMayHaveNoEnd) {
  EXPECT_EQ(Lines("XPOS=1\nCLMD=1", "XPOS"), (MacroLines{"XPOS=1", "", "CLMD=1"}));
}

TEST_F(MacroFile, LinesAreInTheCodePageOfTheMachine) {
  const test::TestMachine japanese(932);
  // The trail byte 58 of the first character is no letter X of a name.
  japanese.Put(kFile, "\x83\x58POS=1\r\nInstrumentName$=\"\x83\x5C\"\r\n");
  EXPECT_EQ(ReadMacroLines(japanese, kFile, "XPOS").Value, "");
  EXPECT_EQ(MacroText(ReadMacroLines(japanese, kFile, "InstrumentName$").Value), "\xE3\x82\xBD");
}

TEST_F(MacroFile, TheNumberStandsBehindTheFirstEqualSign) {
  EXPECT_EQ(MacroNumber("XPOS=5.5"), 5.5);
  EXPECT_EQ(MacroNumber("XPOS =  -2.5e1 mm"), -25);
  EXPECT_EQ(MacroNumber("XPOS=3=4"), 3);
  EXPECT_EQ(MacroNumber("XPOS="), 0);
  EXPECT_EQ(MacroNumber("XPOS=x"), 0);
}

TEST_F(MacroFile, AFlagIsRoundedToAWholeNumberHalvesToEven) {
  EXPECT_EQ(MacroFlag("CLMD=0.5"), 0);
  EXPECT_EQ(MacroFlag("CLMD=1.5"), 2);
  EXPECT_EQ(MacroFlag("CLMD=2.5"), 2);
  EXPECT_EQ(MacroFlag("CLMD=1"), 1);
  EXPECT_EQ(MacroFlag("CLMD=on"), 0);
  EXPECT_EQ(MacroFlag(""), 0);
}

TEST_F(MacroFile, AFlagThatDoesNotFitSixteenBitsRaisesOverflow) {
  EXPECT_EQ(MacroFlag("CLMD=32767"), 32767);
  EXPECT_EQ(ErrorOf([] { MacroFlag("CLMD=32768"); }), ErrorNumber::kOverflow);
  EXPECT_EQ(ErrorOf([] { MacroFlag("CLMD=1e400"); }), ErrorNumber::kOverflow);
}

TEST_F(MacroFile, ATextStandsBetweenTheFirstAndTheSecondQuote) {
  EXPECT_EQ(MacroText("DblRatioMass$=\"140/70\""), "140/70");
  EXPECT_EQ(MacroText("DblRatioMass$ = \"a\" \"b\""), "a");
  EXPECT_EQ(MacroText("InstrumentName$=\"\""), "");
}

TEST_F(MacroFile, ATextWithFewerThanTwoQuotesIsAnInvalidCall) {
  for (const char* line : {"InstrumentName$=abc", "InstrumentName$=\"abc", "=\"", "="}) {
    EXPECT_EQ(ErrorOf([&] { MacroText(line); }), ErrorNumber::kInvalidProcedureCall) << line;
  }
}

TEST_F(MacroFile, AnEmptyFileHasNoLines) {
  EXPECT_EQ(Lines("", "XPOS"), MacroLines());
}

TEST_F(MacroFile, EveryPrefixOfAGoodFileIsRead) {
  const std::string good = "XPOS=5.5\r\nOPT_COLOPGS=1\r\nCLMD=1\r\nXPOS=6\r\n";
  for (std::size_t length = 0; length <= good.size(); ++length) {
    const MacroLines lines = Lines(good.substr(0, length), "XPOS");
    EXPECT_EQ(lines.Value.empty(), length < 5) << length;
    EXPECT_NO_THROW(MacroNumber(lines.Value)) << length;
  }
}

TEST_F(MacroFile, ABinaryFileIsReadToItsEnd) {
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7919 >> 3);
  Lines(bytes, "XPOS");
  EXPECT_EQ(Lines(bytes + "\r\nXPOS=5\r\n", "XPOS").Value, "XPOS=5");
}

TEST_F(MacroFile, OfALongLineTheFirst64KilobytesCount) {
  const std::string kilobytes = "XPOS=" + std::string(64 * 1024 - 5, '1');
  machine.Put(kFile, kilobytes + "2\r\nYPOS=3\r\n" + std::string(70000, 'x') + "XPOS=4\r\n");
  EXPECT_EQ(ReadMacroLines(machine, kFile, "XPOS").Value, kilobytes);
  EXPECT_EQ(ReadMacroLines(machine, kFile, "YPOS").Value, "YPOS=3");
  EXPECT_EQ(ReadAssignments(machine, kFile), (std::vector<std::string>{kilobytes, "YPOS=3"}));
}

TEST_F(MacroFile, ALineIsWholeUpTo64KilobytesAndCutBehindThem) {
  for (const std::size_t size : {kLongestMacroLine - 1, kLongestMacroLine, kLongestMacroLine + 1}) {
    std::string line = "XPOS=" + std::string(size - 5, '1');
    machine.Put(kFile, line + "\r\nYPOS=2\r\n");
    line.resize(std::min(size, kLongestMacroLine));
    EXPECT_TRUE(ReadMacroLines(machine, kFile, "XPOS").Value == line) << size;
    EXPECT_EQ(ReadMacroLines(machine, kFile, "YPOS").Value, "YPOS=2") << size;
  }
}

TEST_F(MacroFile, AFileOfAHundredMegabytesIsReadToItsEnd) {
  constexpr std::streamoff kSize = 100 * 1024 * 1024;
  machine.Put(kFile, "XPOS=1\r\n");
  {
    std::ofstream out(machine.Native(kFile), std::ios::binary | std::ios::in);
    out.seekp(kSize);
    out << "\r\nXPOS=2\r\n";
    ASSERT_TRUE(out.flush());
  }
  EXPECT_EQ(ReadMacroLines(machine, kFile, "XPOS").Value, "XPOS=2");
}

}  // namespace
}  // namespace logbook
