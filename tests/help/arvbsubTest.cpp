// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "help/arvbsub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "shell/StartUp.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kKey[] =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion]\r\n";
constexpr char kCloseAll[] = "HtmlHelp 1 1 18 0";

class arvbsub : public testing::Test {
 protected:
  void PutHostPath(const std::string& escaped) {
    station.disk.Put(station.disk.home() + "/machine.reg",
                     std::string("REGEDIT4\r\n\r\n") + kKey + "\"Path\"=\"" + escaped + "\"\r\n");
  }
  void PutSettings(const std::string& lines) {
    PutHostPath("C:\\\\QUOREX\\\\");
    station.disk.Put("C:\\QUOREX\\qrxexe\\qrxgen.ist", "[PCS,1]\r\n" + lines);
  }
  void Show(std::uint32_t command, std::uint32_t data, const std::string& file = {}) {
    ShowHelp(station.state, station.services, 4711, file, command, data);
  }
  std::string FileNameAfterHelp() {
    cmdHelp_Click(station.state, station.services);
    return station.state.HelpFileName;
  }

  test::TestWorkstation station;
  std::vector<std::string>& calls = station.help.calls;
};

TEST_F(arvbsub, InitHelpTakesTheCookieAndForgetsTheFile) {
  station.state.HelpFileName = "old";
  station.state.HtmlHelpUsed = true;
  InitHelp(station.state, station.services);
  EXPECT_EQ(station.state.HelpCookie, test::TestHelp::kCookie);
  EXPECT_EQ(station.state.HelpFileName, "");
  EXPECT_FALSE(station.state.HtmlHelpUsed);
  EXPECT_THAT(calls, ElementsAre("HtmlHelp 1 1 28 815"));
}

TEST_F(arvbsub, TheTopicOpensInAFreshWindowWithContentsOwnedByTheDesktop) {
  PutSettings("_HELPPATH$=C:\\QUOREX\\help\\\r\n_HELPFILE$=quorex.chm\r\n");
  cmdHelp_Click(station.state, station.services);
  EXPECT_THAT(calls, ElementsAre(kCloseAll, "HtmlHelp 65552 C:\\QUOREX\\help\\quorex.chm 1 1",
                                 "HtmlHelp 65552 C:\\QUOREX\\help\\quorex.chm 15 16700"));
  EXPECT_TRUE(station.state.HtmlHelpUsed);
}

TEST_F(arvbsub, WithBothKeysMissingTheFileIsTheBareName) {
  PutSettings("");
  EXPECT_EQ(FileNameAfterHelp(), "quorex.chm");
}

TEST_F(arvbsub, WithoutASettingsFileTheFileIsTheBareName) {
  PutHostPath("C:\\\\QUOREX");
  EXPECT_EQ(FileNameAfterHelp(), "quorex.chm");
}

TEST_F(arvbsub, OnlyErrInCapitalsStandsForAMissingValue) {
  PutSettings("_HELPPATH$=ERR\r\n_HELPFILE$=err\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "err");
  EXPECT_THAT(calls, ElementsAre("WinHelp 4711 err 15 16700"));
}

TEST_F(arvbsub, AFolderWithoutBackslashGetsOne) {
  PutSettings("_HELPPATH$=C:\\QUOREX\\help\r\n_HELPFILE$=quorex.hlp\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "C:\\QUOREX\\help\\quorex.hlp");
}

TEST_F(arvbsub, AFolderNamedErrInLowerCaseIsAFolder) {
  PutSettings("_HELPPATH$=err\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "err\\quorex.chm");
}

TEST_F(arvbsub, ASettingHasAtMost255BytesAndIsCutThere) {
  for (const std::size_t size : {254, 255, 256, 300}) {
    PutSettings("_HELPPATH$=" + std::string(size, 'p') +
                "\r\n_HELPFILE$=" + std::string(size, 'f') + "\r\n");
    station.state.HelpFileName.clear();
    const std::size_t read = std::min<std::size_t>(size, 255);
    EXPECT_EQ(FileNameAfterHelp(), std::string(read, 'p') + "\\" + std::string(read, 'f'));
  }
}

TEST_F(arvbsub, ASettingEndsAtItsFirstNul) {
  PutSettings(std::string("_HELPPATH$=C:\\H\0x\r\n_HELPFILE$=a.chm\0.hlp\r\n", 42));
  EXPECT_EQ(FileNameAfterHelp(), "C:\\H\\a.chm");
}

TEST_F(arvbsub, SettingsAreInTheCodePageOfTheMachine) {
  PutSettings("_HELPFILE$=Ger\xe4t.chm\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "Ger\xc3\xa4t.chm");
}

TEST_F(arvbsub, AnEmptySettingIsNoMissingOne) {
  PutSettings("_HELPPATH$=C:\\H\r\n_HELPFILE$=\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "C:\\H\\");
  EXPECT_THAT(calls, ElementsAre("WinHelp 4711 C:\\H\\ 15 16700"));
}

TEST_F(arvbsub, AWorkstationFolderWithoutBackslashFindsItsSettings) {
  PutSettings("_HELPFILE$=found.chm\r\n");
  PutHostPath("C:\\\\QUOREX");
  EXPECT_EQ(FileNameAfterHelp(), "found.chm");
}

TEST_F(arvbsub, WithoutAWorkstationThereIsNoHelpAndNoMessage) {
  cmdHelp_Click(station.state, station.services);
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_THAT(station.messages.shown, IsEmpty());
  EXPECT_EQ(station.state.HelpFileName, "");
}

TEST_F(arvbsub, AHlpFileInAnyCaseGoesToTheOtherEngine) {
  PutSettings("_HELPPATH$=C:\\H\r\n_HELPFILE$=QUOREX.HLP\r\n");
  cmdHelp_Click(station.state, station.services);
  EXPECT_THAT(calls, ElementsAre("WinHelp 4711 C:\\H\\QUOREX.HLP 15 16700"));
  EXPECT_FALSE(station.state.HtmlHelpUsed);
}

TEST_F(arvbsub, AChmFileInAnyCaseGoesToTheHtmlEngine) {
  Show(15, 1, "C:\\H\\QUOREX.Chm");
  EXPECT_EQ(calls.back(), "HtmlHelp 65552 C:\\H\\QUOREX.Chm 15 1");
}

TEST_F(arvbsub, TheFileIsFoundOnceAndKept) {
  PutSettings("_HELPFILE$=first.chm\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "first.chm");
  PutSettings("_HELPFILE$=second.chm\r\n");
  EXPECT_EQ(FileNameAfterHelp(), "first.chm");
}

TEST_F(arvbsub, AGivenFileReplacesTheOneInUse) {
  Show(15, 7, "C:\\a.hlp");
  Show(15, 8);
  EXPECT_THAT(calls, ElementsAre("WinHelp 4711 C:\\a.hlp 15 7", "WinHelp 4711 C:\\a.hlp 15 8"));
}

TEST_F(arvbsub, CommandsAreTranslatedForTheHtmlEngine) {
  const std::pair<std::uint32_t, const char*> sent[] = {
      {3, "HtmlHelp 65552 a.chm 2 9"},
      {11, "HtmlHelp 65552 a.chm 0 9"},
      {0, "HtmlHelp 65552 a.chm 0 9"},
      {14, "HtmlHelp 65552 a.chm 14 9"},
  };
  for (const auto& [command, call] : sent) {
    calls.clear();
    Show(command, 9, "a.chm");
    EXPECT_THAT(calls, ElementsAre(call)) << command;
  }
}

TEST_F(arvbsub, CommandOneIsATopicToo) {
  Show(1, 9, "a.chm");
  EXPECT_THAT(calls,
              ElementsAre(kCloseAll, "HtmlHelp 65552 a.chm 1 1", "HtmlHelp 65552 a.chm 15 9"));
}

TEST_F(arvbsub, CommandTwoClosesAllHelpWindowsAndNothingElse) {
  for (const std::uint32_t command : {2u, 18u}) {
    calls.clear();
    Show(command, 9, "a.chm");
    EXPECT_THAT(calls, ElementsAre(kCloseAll)) << command;
  }
}

TEST_F(arvbsub, CommandsOfTheOtherEngineGoThroughAsTheyAre) {
  for (const std::uint32_t command : {1u, 2u, 3u, 11u, 15u}) {
    calls.clear();
    Show(command, 9, "a.hlp");
    EXPECT_THAT(calls, ElementsAre("WinHelp 4711 a.hlp " + std::to_string(command) + " 9"));
  }
}

TEST_F(arvbsub, CloseHelpClosesWindowsAndEngine) {
  InitHelp(station.state, station.services);
  calls.clear();
  CloseHelp(station.state, station.services);
  EXPECT_THAT(calls, ElementsAre(kCloseAll, "HtmlHelp 1 1 29 815"));
}

TEST_F(arvbsub, CloseHelpQuitsTheOtherEngineIfItsFileWasInUse) {
  for (const char* file : {"a.hlp", "A.HLP"}) {
    station.state.HelpFileName = file;
    calls.clear();
    CloseHelp(station.state, station.services);
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls.back(), "WinHelp 4711  2 0");
  }
}

TEST_F(arvbsub, TheRunBeginsWithInitHelpAndEndsWithCloseHelp) {
  station.cell.on_written = [this](const std::string&) { station.cell.text = "0"; };
  Form_Initialize(station.state, station.services);
  EXPECT_THROW(GlobalEnd(station.state, station.services), test::ProcessEnded);
  EXPECT_THAT(calls, ElementsAre("HtmlHelp 1 1 28 815", kCloseAll, "HtmlHelp 1 1 29 815"));
}

TEST_F(arvbsub, HelpIsClosedEvenIfTheHostIsOutOfReach) {
  station.cell.fails_on_read = true;
  EXPECT_THROW(GlobalEnd(station.state, station.services), test::ProcessEnded);
  EXPECT_THAT(calls, ElementsAre(kCloseAll, "HtmlHelp 1 1 29 0"));
}

TEST_F(arvbsub, GetHostPathIsEmptyWithoutHiveKeyOrValue) {
  EXPECT_EQ(GetHostPath(station.disk), "");
  station.disk.Put(station.disk.home() + "/machine.reg",
                   "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Other]\r\n");
  EXPECT_EQ(GetHostPath(station.disk), "");
  station.disk.Put(station.disk.home() + "/machine.reg",
                   std::string("REGEDIT4\r\n\r\n") + kKey + "\"Other\"=\"x\"\r\n");
  EXPECT_EQ(GetHostPath(station.disk), "");
}

TEST_F(arvbsub, GetHostPathTakesAtMost255Bytes) {
  PutHostPath(std::string(255, 'x'));
  EXPECT_EQ(GetHostPath(station.disk), std::string(255, 'x'));
  PutHostPath(std::string(256, 'x'));
  EXPECT_EQ(GetHostPath(station.disk), "");
  std::string umlauts;
  for (int i = 0; i < 255; ++i) umlauts += "\xc3\xa4";
  PutHostPath(umlauts);
  EXPECT_EQ(GetHostPath(station.disk), umlauts) << "255 bytes in the code page";
}

TEST_F(arvbsub, GetHostPathEndsAtTheFirstNul) {
  station.disk.Put(
      station.disk.home() + "/machine.reg",
      std::string("REGEDIT4\r\n\r\n") + kKey + "\"Path\"=hex(1):43,3a,5c,51,00,52,00\r\n");
  EXPECT_EQ(GetHostPath(station.disk), "C:\\Q");
}

}  // namespace
}  // namespace logbook
