// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/MacroIndex.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "catalogue/ItemRecord.h"
#include "support/Errors.h"
#include "support/ProcessFigures.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

constexpr const char* kFile = "C:\\a.mac";

const CodePage& Page(int number) {
  return *CodePage::Find(number);
}

TEST(MacroIndexTest, FindsTheLastLineOfEachKind) {
  const MacroIndex index(Page(1252), "xpos=1\r\nOPT_COLOPGS=2\rCLMD=3\nXPOS 4\r\nmyXPos=5");
  EXPECT_EQ(index.Find("XPOS"), (MacroLines{"myXPos=5", "OPT_COLOPGS=2", "CLMD=3"}));
  EXPECT_EQ(index.Find("OPGS"), (MacroLines{"OPT_COLOPGS=2", "", "CLMD=3"}));
  EXPECT_EQ(index.Find("YPOS"), (MacroLines{"", "OPT_COLOPGS=2", "CLMD=3"}));
}

TEST(MacroIndexTest, FindsWhatGoingThroughTheLinesFinds) {
  std::mt19937 random(11);
  const std::string pieces[] = {"XPOS",     "xpos",  "=",    "=5", "OPT_COLOPGS", "opgs",
                                "CLMD",     "clmd=", "\r\n", "\r", "\n",          "\xE4",
                                "\x83\x58", "\x83",  " ",    "X",  "SenseMass[1]"};
  for (int round = 0; round < 2000; ++round) {
    const CodePage& page = Page(round % 2 == 0 ? 1252 : 932);
    std::string bytes;
    for (int piece = 0; piece < 25; ++piece) bytes += pieces[random() % std::size(pieces)];
    const MacroIndex index(page, bytes);
    const std::vector<std::string> lines = AssignmentsIn(page, bytes);
    for (const char* variable : {"XPOS", "OPGS", "OPT_COLOPGS", "CLMD", "LMD=", "X", "", "\xC3\x84",
                                 "SenseMass[1]", "SENSEMASS[11]"})
      ASSERT_EQ(index.Find(variable), FindMacroLines(lines, variable))
          << testing::PrintToString(bytes) << " " << variable;
  }
}

// Every variable of the catalogue in files that hold them all, in changing order and case.
TEST(MacroIndexTest, FindsEveryVariableOfTheCatalogueAsGoingThroughTheLinesDoes) {
  Catalogues catalogues;
  FillCatalogues(catalogues);
  std::vector<std::string> vars;
  for (int row = 0; row < kTuneRowCount; ++row)
    vars.push_back(RowAt(catalogues.TuneItems, row).Var);
  const test::TestMachine disk;
  std::mt19937 random(5);
  for (int round = 0; round < 20; ++round) {
    std::string bytes;
    for (int line = 0; line < 200; ++line) {
      std::string var = vars[random() % vars.size()];
      if (random() % 3 == 0) var[random() % var.size()] ^= 0x20;
      bytes += var + (random() % 9 == 0 ? " " : "=") + std::to_string(line) + "\r\n";
      if (random() % 50 == 0) bytes += "CLMD=1 OPT_COLOPGS=2\r\nclmd=3\r\n";
    }
    disk.Put(kFile, bytes);
    const std::vector<MacroLines> found = ReadMacroLines(disk, kFile, vars);
    const std::vector<std::string> lines = AssignmentsIn(Page(1252), bytes);
    ASSERT_EQ(found.size(), vars.size());
    for (std::size_t i = 0; i < vars.size(); ++i)
      ASSERT_EQ(found[i], FindMacroLines(lines, vars[i])) << vars[i] << "\n" << bytes;
  }
}

TEST(MacroIndexTest, ALargeFileGivesTheSameInBoundedMemory) {
  const test::TestMachine disk;
  std::string bytes = "XPOS=1\r\nOPT_COLOPGS=2\r\n";
  while (bytes.size() < 30'000'000)
    bytes += "a line without any meaning, and one of many, but with a sign = 5\r\n";
  bytes += "xpos=3\r\nCLMD=4\r\n";
  disk.Put(kFile, bytes);
  std::string().swap(bytes);
  const std::vector<std::string> vars = {"XPOS", "YPOS", "OPGS"};
  const long before = test::PeakMemory();
  const std::vector<MacroLines> found = ReadMacroLines(disk, kFile, vars);
  EXPECT_LT(test::PeakMemory() - before, 16 * 1024) << "KiB";
  EXPECT_EQ(found, (std::vector<MacroLines>{{"xpos=3", "OPT_COLOPGS=2", "CLMD=4"},
                                            {"", "OPT_COLOPGS=2", "CLMD=4"},
                                            {"OPT_COLOPGS=2", "", "CLMD=4"}}));
}

TEST(MacroIndexTest, ALineWithoutEndIsReadInBoundedMemory) {
  const test::TestMachine disk;
  disk.Put(kFile, "XPOS=1\r\nYPOS=2");
  {
    std::ofstream out(disk.Native(kFile), std::ios::binary | std::ios::in);
    out.seekp(96 * 1024 * 1024);
    out << "XPOS=3\r\nCLMD=4\r\n";
    ASSERT_TRUE(out.flush());
  }
  const std::vector<std::string> vars = {"XPOS", "YPOS"};
  const long before = test::PeakMemory();
  const std::vector<MacroLines> found = ReadMacroLines(disk, kFile, vars);
  EXPECT_LT(test::PeakMemory() - before, 16 * 1024) << "KiB";
  EXPECT_EQ(found[0], ReadMacroLines(disk, kFile, "XPOS"));
  EXPECT_EQ(found[1], ReadMacroLines(disk, kFile, "YPOS"));
  EXPECT_EQ(found[0].Value, "XPOS=1");
  EXPECT_EQ(found[0].Clmd, "CLMD=4");
}

TEST(MacroIndexTest, AMissingFileRaisesWhatOpeningRaises) {
  const test::TestMachine disk;
  const std::vector<std::string> vars = {"XPOS"};
  EXPECT_EQ(test::ErrorOf([&] { ReadMacroLines(disk, kFile, vars); }), ErrorNumber::kFileNotFound);
}

}  // namespace
}  // namespace logbook
