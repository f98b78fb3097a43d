// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Workstation.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "base/Profile.h"
#include "support/TestMachine.h"

namespace logbook::host {
namespace {

class WorkstationTest : public ::testing::Test {
 protected:
  Workstation Make(const WorkstationSetup& setup = {}) {
    MakeWorkstation(home_.home(), setup);
    return OpenWorkstation(home_.home());
  }
  std::string Setting(const Workstation& workstation, const std::string& file,
                      const std::string& section, const std::string& key) {
    return GetPrivateProfileString(workstation.machine, section, key, "(none)", 260,
                                   workstation.exe_path + file);
  }

  test::TestMachine home_;
};

TEST_F(WorkstationTest, HasItsFoldersAndSettings) {
  const Workstation workstation = Make();
  EXPECT_EQ(workstation.root, "C:\\QUOREX\\");
  for (const std::string folder : {"qrxexe", "inst1", "PDF", "help"}) {
    EXPECT_TRUE(home_.Has("C:\\QUOREX\\" + folder)) << folder;
  }
  EXPECT_FALSE(home_.Has("C:\\QUOREX\\inst1\\maintain")) << "the logbook makes it";
  const std::string group = Setting(workstation, "qrxgen.ist", "PCS,1", "GroupName");
  EXPECT_FALSE(group.empty());
  EXPECT_NE(Setting(workstation, "acslvl.ist", "LOGBOOK", "CONTROL\\Delete Log").find(group),
            std::string::npos);
  EXPECT_EQ(Setting(workstation, "qrxgen.ist", "pcs,1", "username"), "Operator");
  EXPECT_EQ(Setting(workstation, "qrxgen.ist", "PCS,1", "_HELPPATH$"), "C:\\QUOREX\\help\\");
  EXPECT_EQ(Setting(workstation, "logbook.ini", "Header6", "Cat"), "Tune");
  EXPECT_EQ(Setting(workstation, "logbook.ini", "Header_CE5", "Item"), "91");
}

TEST_F(WorkstationTest, ExistingFilesAndLogsStayAsTheyAre) {
  home_.Put("C:\\QUOREX\\qrxexe\\logbook.ini", "[LogBook]\r\nLastFile=x\r\n");
  home_.Put("C:\\QUOREX\\inst1\\maintain\\26111500\\comment.txt", "mine\r\n");
  Make();
  Make({std::nullopt, {ParseBuild("plain"), 99}});
  EXPECT_EQ(home_.Get("C:\\QUOREX\\qrxexe\\logbook.ini"), "[LogBook]\r\nLastFile=x\r\n");
  EXPECT_EQ(home_.Get("C:\\QUOREX\\inst1\\maintain\\26111500\\comment.txt"), "mine\r\n");
  EXPECT_EQ(InstrumentOf(OpenWorkstation(home_.home())).seed, 1u);
}

TEST_F(WorkstationTest, CodePageStandsInTheHive) {
  const Workstation workstation = Make({932, {}});
  EXPECT_EQ(workstation.machine.code_page->Number(), 932);
  EXPECT_THROW(Make({1250, {}}), std::invalid_argument) << "the home has another one";
  EXPECT_NO_THROW(Make({932, {}}));
  EXPECT_NO_THROW(Make());
}

TEST_F(WorkstationTest, UnknownCodePageIsRefusedBeforeAnythingIsMade) {
  EXPECT_THROW(Make({437, {}}), std::invalid_argument);
  EXPECT_FALSE(home_.Has("C:\\QUOREX"));
}

TEST_F(WorkstationTest, AnswersTheFourItemsAndNoOther) {
  const Workstation workstation = Make();
  EXPECT_EQ(ItemText(workstation, "_exepath$"), "C:\\QUOREX\\qrxexe\\");
  EXPECT_EQ(ItemText(workstation, "_instpath$"), "C:\\QUOREX\\inst1\\");
  EXPECT_EQ(ItemText(workstation, "_helppath$"), "C:\\QUOREX\\help\\");
  EXPECT_EQ(ItemText(workstation, "_helpfile$"), "quorex.chm");
  for (const std::string item : {"", "_exepath", "_EXEPATH$", "_logpath$"}) {
    EXPECT_EQ(ItemText(workstation, item), std::nullopt) << item;
  }
}

TEST_F(WorkstationTest, HelpFollowsTheGeneralSettingsAndAFolderEndsInABackslash) {
  const Workstation workstation = Make();
  home_.Put("C:\\QUOREX\\qrxexe\\qrxgen.ist",
            "[PCS,1]\r\n_HELPPATH$=C:\\books\r\n_HELPFILE$=other.hlp\r\n");
  EXPECT_EQ(ItemText(workstation, "_helppath$"), "C:\\books\\");
  EXPECT_EQ(ItemText(workstation, "_helpfile$"), "other.hlp");
}

TEST_F(WorkstationTest, RootFollowsTheHive) {
  home_.Put(home_.home() + "/machine.reg",
            "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\"
            "CurrentVersion]\r\n\"Path\"=\"C:\\\\Other\"\r\n");
  EXPECT_EQ(Make().exe_path, "C:\\Other\\qrxexe\\");
  EXPECT_TRUE(home_.Has("C:\\Other\\qrxexe\\qrxgen.ist"));
}

TEST_F(WorkstationTest, RemembersTheInstrumentThatItWasSetUpWith) {
  const Workstation workstation = Make({std::nullopt, {ParseBuild("lumarin+afc"), 77}});
  EXPECT_EQ(BuildName(InstrumentOf(workstation).build), "lumarin+afc");
  EXPECT_EQ(InstrumentOf(workstation).seed, 77u);
}

TEST_F(WorkstationTest, WithoutSettingsTheInstrumentIsTheDemonstrationBuild) {
  const Instrument instrument = InstrumentOf(OpenWorkstation(home_.home()));
  EXPECT_EQ(instrument.build, ParseBuild(kDemonstrationBuild));
  EXPECT_EQ(instrument.seed, 1u);
}

TEST_F(WorkstationTest, LogNumberIsTheNumberOfFoldersBeside) {
  for (const std::string name : {"26111400", "26111500", "26111501"}) {
    home_.MakeFolders("C:\\logs\\" + name);
  }
  home_.Put("C:\\logs\\listlog.csv", "");
  EXPECT_EQ(LogNumberOf(home_, "C:\\logs\\26111501\\"), 2);
  EXPECT_EQ(LogNumberOf(home_, "C:\\logs\\26111501"), 2);
  EXPECT_EQ(LogNumberOf(home_, "C:\\logs\\26111600\\"), 3) << "not made yet";
  EXPECT_EQ(LogNumberOf(home_, "C:\\nowhere\\26111600\\"), 0);
}

TEST_F(WorkstationTest, OptionsGoBesideWhatTheLogbookWrote) {
  home_.Put("C:\\log\\logfile.ini", "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n");
  WriteOptions(home_, "C:\\log\\", ParseBuild("trz-cs+styleb"));
  EXPECT_EQ(
      home_.Get("C:\\log\\logfile.ini"),
      "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\nLENS2=1\r\nLENS3=0\r\n"
      "Security=0\r\nSTYLEB=1\r\nNEW_RF=0\r\nQPTYPE=0\r\nAFC=0\r\nSC=0\r\nOPGS=0\r\nPMP2=0\r\n"
      "COLOPGS=0\r\n");
}

TEST_F(WorkstationTest, AManualIsCopiedIntoTheHelpFolderAndNamedInTheSettings) {
  const Workstation workstation = Make();
  EXPECT_EQ(Setting(workstation, "qrxgen.ist", "PCS,1", "_HELPFILE$"), "quorex.chm");
  home_.Put("C:\\book\\logbook.hhbook", "Title\n");
  home_.Put("C:\\book\\start.html", "page");
  InstallManual(workstation, home_.Native("C:\\book"));
  EXPECT_EQ(Setting(workstation, "qrxgen.ist", "PCS,1", "_HELPFILE$"), "logbook.hhbook");
  EXPECT_EQ(ItemText(workstation, "_helpfile$"), "logbook.hhbook");
  EXPECT_EQ(home_.Get("C:\\QUOREX\\help\\logbook.hhbook"), "Title\n");
  EXPECT_EQ(home_.Get("C:\\QUOREX\\help\\start.html"), "page");
}

TEST_F(WorkstationTest, AFolderWithoutAHelpBookIsRefused) {
  const Workstation workstation = Make();
  home_.MakeFolders("C:\\empty");
  for (const std::string folder : {"C:\\empty", "C:\\missing"})
    EXPECT_THROW(InstallManual(workstation, home_.Native(folder)), std::invalid_argument);
  EXPECT_EQ(Setting(workstation, "qrxgen.ist", "PCS,1", "_HELPFILE$"), "quorex.chm");
}

}  // namespace
}  // namespace logbook::host
