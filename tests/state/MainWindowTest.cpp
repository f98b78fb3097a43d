// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/MainWindow.h"

#include <gtest/gtest.h>

#include "state/AppState.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::TestWorkstation;

// True if cmdDelete stays enabled for this group and these allowed groups.
bool MayDelete(const std::string& group_profile, const std::string& allowed_profile) {
  TestWorkstation station;
  if (!group_profile.empty()) station.disk.Put("C:\\QUOREX\\qrxexe\\qrxgen.ist", group_profile);
  if (!allowed_profile.empty()) station.disk.Put("C:\\QUOREX\\qrxexe\\acslvl.ist", allowed_profile);
  Init_Sec(station.state);
  return station.state.frmMain.cmdDelete.Enabled;
}

TEST(Init_Sec, GroupThatIsASubstringOfTheAllowedTextMayDelete) {
  EXPECT_TRUE(MayDelete("[PCS,1]\r\nGroupName=B\r\n", "[LOGBOOK]\r\nCONTROL\\Delete Log=ABC\r\n"));
  EXPECT_TRUE(MayDelete("[PCS,1]\r\nGroupName=Lab\r\n",
                        "[LOGBOOK]\r\nCONTROL\\Delete Log=Office;Labs\r\n"));
}

TEST(Init_Sec, CaseOfTheGroupCounts) {
  EXPECT_FALSE(MayDelete("[PCS,1]\r\nGroupName=b\r\n", "[LOGBOOK]\r\nCONTROL\\Delete Log=ABC\r\n"));
}

TEST(Init_Sec, EmptyGroupMayNotDelete) {
  EXPECT_FALSE(MayDelete("[PCS,1]\r\nGroupName=\r\n", "[LOGBOOK]\r\nCONTROL\\Delete Log=ABC\r\n"));
}

TEST(Init_Sec, MissingKeyMayNotDelete) {
  EXPECT_FALSE(MayDelete("[PCS,1]\r\nGroupName=B\r\n", "[LOGBOOK]\r\nother=ABC\r\n"));
}

TEST(Init_Sec, WorkstationWithoutTheFilesMayNotDelete) {
  EXPECT_FALSE(MayDelete("", ""));
}

TEST(SetMainCaptions, EveryButtonHasItsText) {
  TestWorkstation station;
  SetMainCaptions(station.state);
  MainWindow& window = station.state.frmMain;
  EXPECT_EQ(window.Window.Caption, "Maintenance LogBook");
  EXPECT_EQ(window.cmdRecord.Caption, "Record Log");
  EXPECT_EQ(window.cmdDelete.Caption, "Delete Log");
  EXPECT_EQ(window.cmdBrowse.Caption, "View Log");
  EXPECT_EQ(window.cmdPrint.Caption, "Print List");
  EXPECT_EQ(window.cmdArchive.Caption, "Archive...");
  EXPECT_EQ(window.cmdExit.Caption, "Exit");
  EXPECT_EQ(window.cmdHelp.Caption, "Help");
}

TEST(SetMainFonts, WindowAndEveryControlHaveTheFormFont) {
  TestWorkstation station;
  SetMainFonts(station.state);
  EXPECT_EQ(station.state.frmMain.Window.TextFont.Name, "Arial");
  for (const Control* control : station.state.frmMain.Controls()) {
    EXPECT_EQ(control->TextFont.Name, "Arial") << control->Name;
    EXPECT_EQ(control->TextFont.Size, 8) << control->Name;
  }
}

}  // namespace
}  // namespace logbook
