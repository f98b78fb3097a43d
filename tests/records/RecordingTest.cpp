// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/Recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "base/Profile.h"
#include "shell/StartUp.h"
#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::NumberRaisedBy;
using test::SmallFilesOnly;
using test::TestWorkstation;
using testing::ElementsAre;

constexpr const char* kIni = "C:\\QUOREX\\qrxexe\\logbook.ini";
constexpr const char* kLog = "C:\\QUOREX\\inst1\\maintain\\26111500\\";

// A host that takes a job at the second look and then clears the cell.
void AnswerJobs(TestWorkstation& station) {
  station.events.on_deliver = [&](int delivery) {
    if (station.cell.text == "1" && delivery >= 2) station.cell.text = "0";
  };
}

std::vector<std::string> DisabledCommands(MainWindow& window) {
  std::vector<std::string> names;
  for (const Control* control : window.Controls())
    if (!control->Enabled) names.push_back(control->Name);
  return names;
}

TEST(GetLogFile, HandsThePathOverOnlyWhenTheCellReadsZero) {
  TestWorkstation station;
  station.cell.text = "5";
  station.events.on_deliver = [&](int delivery) {
    if (delivery < 10) {
      EXPECT_FALSE(station.disk.Has(kIni));
      EXPECT_TRUE(station.cell.written.empty());
    }
    if (delivery == 10) station.cell.text = "0";
    if (delivery == 20) station.cell.text = "0";
  };
  GetLogFile(station.state, station.services, kLog);
  EXPECT_EQ(station.events.delivered, 20);
  EXPECT_THAT(station.cell.written, ElementsAre("1"));
  EXPECT_EQ(station.disk.Get(kIni), std::string("[LogBook]\r\nLogFileName=") + kLog + "\r\n");
}

TEST(GetLogFile, EmptyCellCountsAsZero) {
  TestWorkstation station;
  AnswerJobs(station);
  station.cell.text = "";
  GetLogFile(station.state, station.services, kLog);
  EXPECT_THAT(station.cell.written, ElementsAre("1"));
}

TEST(GetLogFile, FirstValueOtherThanOneEndsTheWait) {
  TestWorkstation station;
  station.events.on_deliver = [&](int) { station.cell.text = "3"; };
  GetLogFile(station.state, station.services, kLog);
  EXPECT_EQ(station.events.delivered, 1);
}

TEST(GetLogFile, NumberInTheCellThatIsTooLargeIsNeitherZeroNorOne) {
  for (const std::string& huge : {std::string("1e999"), std::string(400, '9')}) {
    TestWorkstation station;
    station.cell.text = huge;
    station.events.on_deliver = [&](int delivery) {
      EXPECT_EQ(station.cell.written.empty(), delivery <= 3);
      if (delivery == 3) station.cell.text = "0";
      if (delivery == 4) station.cell.text = huge;
    };
    GetLogFile(station.state, station.services, kLog);
    EXPECT_EQ(station.events.delivered, 4);
    EXPECT_THAT(station.cell.written, ElementsAre("1"));
  }
}

// The host reads the name as soon as it sees the cell.
TEST(GetLogFile, TheFolderIsNamedBeforeTheCellIsSet) {
  TestWorkstation station;
  AnswerJobs(station);
  std::string profile;
  station.cell.on_written = [&](const std::string&) { profile = station.disk.Get(kIni); };
  GetLogFile(station.state, station.services, kLog);
  EXPECT_EQ(profile, std::string("[LogBook]\r\nLogFileName=") + kLog + "\r\n");
}

constexpr const char* kOlderLog =
    "[LogBook]\r\nLogFileName=C:\\QUOREX\\inst1\\maintain\\26111400\\\r\n";

// Otherwise the host would capture into the record that stands there.
void ExpectTheCellUntouched(TestWorkstation& station) {
  EXPECT_EQ(NumberRaisedBy([&] { GetLogFile(station.state, station.services, kLog); }), 75);
  EXPECT_TRUE(station.cell.written.empty());
  EXPECT_EQ(station.disk.Get(kIni), kOlderLog);
}

TEST(GetLogFile, AReadOnlyProfileThatNamesAnotherLogIsARunTimeErrorBeforeTheHostIsAsked) {
  TestWorkstation station;
  station.disk.Put(kIni, kOlderLog);
  std::filesystem::permissions(station.disk.Native(kIni), std::filesystem::perms::owner_read);
  ExpectTheCellUntouched(station);
}

TEST(GetLogFile, AFullDiskIsARunTimeErrorBeforeTheHostIsAsked) {
  TestWorkstation station;
  station.disk.Put(kIni, kOlderLog);
  const SmallFilesOnly full_disk(1);
  ExpectTheCellUntouched(station);
}

TEST(GetLogFile, AProfileThatNamesTheLogAlreadyIsGoodEnough) {
  TestWorkstation station;
  AnswerJobs(station);
  station.disk.Put(kIni, std::string("[logbook]\r\nLOGFILENAME = ") + kLog);
  std::filesystem::permissions(station.disk.Native(kIni), std::filesystem::perms::owner_read);
  GetLogFile(station.state, station.services, kLog);
  EXPECT_THAT(station.cell.written, ElementsAre("1"));
}

TEST(GetLogFile, APathOfAnyLengthIsHandedOver) {
  TestWorkstation station;
  AnswerJobs(station);
  const std::string path = "C:\\" + std::string(2000, 'a') + "\\26111500\\";
  GetLogFile(station.state, station.services, path);
  EXPECT_THAT(station.cell.written, ElementsAre("1"));
}

// The host could not find the folder by what the profile holds.
TEST(GetLogFile, APathBeyondTheCodePageIsARunTimeErrorBeforeTheHostIsAsked) {
  TestWorkstation station;
  const std::string path = "C:\\\u6E05\u6383\\26111500\\";
  EXPECT_EQ(NumberRaisedBy([&] { GetLogFile(station.state, station.services, path); }), 75);
  EXPECT_TRUE(station.cell.written.empty());
}

TEST(cmdRecord, AFolderThatCannotBeNamedToTheHostIsAnUntrappedError) {
  for (const bool auto_rec : {false, true}) {
    TestWorkstation station;
    station.state.AutoRec = auto_rec;
    station.disk.Put(kIni, kOlderLog);
    std::filesystem::permissions(station.disk.Native(kIni), std::filesystem::perms::owner_read);
    EXPECT_EQ(NumberRaisedBy([&] { cmdRecord_Click(station.state, station.services); }), 75);
    EXPECT_TRUE(station.cell.written.empty());
    EXPECT_TRUE(station.disk.Has(std::string(kLog) + "logfile.ini"));
    EXPECT_EQ(DisabledCommands(station.state.frmMain).size(), 6u);
  }
}

// The user presses Exit while the host writes the snapshot.
TEST(cmdRecord, ExitDuringTheWaitEndsTheRunWhenTheHostIsDoneAndOpensNoEditor) {
  TestWorkstation station;
  station.events.on_deliver = [&](int delivery) {
    if (delivery == 1) GlobalEnd(station.state, station.services);
    if (delivery == 5) station.cell.text = "0";
    if (station.cell.text == "9") station.cell.text = "0";
  };
  EXPECT_THROW(cmdRecord_Click(station.state, station.services), test::ProcessEnded);
  EXPECT_GE(station.events.delivered, 5);
  EXPECT_THAT(station.cell.written, ElementsAre("1", "9"));
  EXPECT_THAT(station.forms.calls,
              testing::Not(testing::Contains(testing::StartsWith("ShowLogEditor"))));
  EXPECT_TRUE(station.disk.Has(kLog));
}

TEST(cmdRecord, WorkingCommandsRestUntilTheRecordIsDone) {
  TestWorkstation station;
  AnswerJobs(station);
  std::vector<std::string> during;
  station.forms.on_editor = [&](const auto&) { during = DisabledCommands(station.state.frmMain); };
  cmdRecord_Click(station.state, station.services);
  EXPECT_THAT(during, testing::UnorderedElementsAre("cmdRecord", "ListView1", "cmdBrowse",
                                                    "cmdDelete", "cmdPrint", "cmdArchive"));
  EXPECT_THAT(DisabledCommands(station.state.frmMain), ElementsAre());
}

TEST(cmdRecord, TheWindowShowsWhenTheCommandsRestAndWhenTheyComeBack) {
  TestWorkstation station;
  AnswerJobs(station);
  std::vector<std::size_t> shown;
  station.forms.on_update = [&] {
    shown.push_back(DisabledCommands(station.state.frmMain).size());
  };
  cmdRecord_Click(station.state, station.services);
  ASSERT_GE(shown.size(), 2u);
  EXPECT_EQ(shown.front(), 6u);
  EXPECT_EQ(shown.back(), 0u);
}

TEST(cmdRecord, WorkingCommandsRestUntilTheUploadIsDone) {
  TestWorkstation station;
  AnswerJobs(station);
  station.ecm.enabled = true;
  std::vector<std::size_t> disabled;
  station.ecm.on_call = [&] { disabled.push_back(DisabledCommands(station.state.frmMain).size()); };
  cmdRecord_Click(station.state, station.services);
  EXPECT_EQ(station.ecm.calls.size(), 2u) << "asked, then submitted";
  EXPECT_THAT(disabled, ElementsAre(6, 6));
  EXPECT_THAT(DisabledCommands(station.state.frmMain), ElementsAre());
}

TEST(cmdRecord, RefusedUserMayDeleteAfterARecording) {
  TestWorkstation station;
  AnswerJobs(station);
  Init_Sec(station.state);
  ASSERT_FALSE(station.state.frmMain.cmdDelete.Enabled);
  cmdRecord_Click(station.state, station.services);
  EXPECT_TRUE(station.state.frmMain.cmdDelete.Enabled);
}

TEST(cmdRecord, EditorOpensWithTheFolderInItsCaption) {
  TestWorkstation station;
  AnswerJobs(station);
  cmdRecord_Click(station.state, station.services);
  EXPECT_EQ(station.state.LogPath, kLog);
  EXPECT_THAT(station.forms.calls,
              testing::Contains(std::string("ShowLogEditor Logbook Editor:") + kLog));
}

TEST(cmdRecord, FolderExistsBeforeTheCellIsClearedAndNothingElseIsWritten) {
  TestWorkstation station;
  station.cell.text = "2";
  station.events.on_deliver = [&](int delivery) {
    if (delivery == 5) {
      EXPECT_TRUE(station.disk.Has(std::string(kLog) + "logfile.ini"));
      EXPECT_FALSE(station.disk.Has(kIni));
      station.cell.text = "0";
    }
    if (station.cell.text == "1") station.cell.text = "0";
  };
  cmdRecord_Click(station.state, station.services);
  EXPECT_TRUE(station.disk.Has(kIni));
}

TEST(cmdRecord, ListIsRebuiltAfterTheEditor) {
  TestWorkstation station;
  AnswerJobs(station);
  cmdRecord_Click(station.state, station.services);
  ASSERT_EQ(station.state.ListView1.Rows.size(), 1u);
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(1), "26111500");
}

TEST(cmdRecord, CancelWithAContentServerUploadsNothing) {
  TestWorkstation station;
  AnswerJobs(station);
  station.ecm.enabled = true;
  station.forms.on_editor = [&](const auto&) {
    std::filesystem::remove_all(station.disk.Native(kLog));
  };
  cmdRecord_Click(station.state, station.services);
  EXPECT_TRUE(station.state.ListView1.Rows.empty());
  EXPECT_TRUE(station.messages.shown.empty());
  EXPECT_THAT(station.ecm.calls, testing::Not(testing::Contains(testing::StartsWith("EcmSubmit"))));
  EXPECT_THAT(DisabledCommands(station.state.frmMain), ElementsAre());
}

TEST(cmdRecord, UsedUpDayLeavesTheListAsItWas) {
  TestWorkstation station;
  for (int i = 0; i < 256; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "261115%02X", i);
    station.disk.MakeFolders(std::string(TestWorkstation::kLogRoot) + name);
  }
  cmdRecord_Click(station.state, station.services);
  EXPECT_EQ(station.state.LogPath, "");
  EXPECT_EQ(station.messages.shown.size(), 1u);
  EXPECT_FALSE(station.disk.Has(std::string(TestWorkstation::kLogRoot) + "listlog.csv"));
  EXPECT_TRUE(station.cell.written.empty());
  EXPECT_THAT(DisabledCommands(station.state.frmMain), ElementsAre());
}

TEST(cmdRecord, AutoRecPassesOverTheUnloadedEditorOnly) {
  TestWorkstation station;
  AnswerJobs(station);
  station.state.AutoRec = true;
  station.forms.on_editor = [](const auto&) { throw RunTimeError(ErrorNumber::kObjectUnloaded); };
  EXPECT_NO_THROW(cmdRecord_Click(station.state, station.services));
  EXPECT_THAT(station.forms.calls, testing::Contains("ShowLogEditor (no caption)"));
  station.forms.on_editor = [](const auto&) { throw RunTimeError(ErrorNumber::kDiskFull); };
  EXPECT_THROW(cmdRecord_Click(station.state, station.services), RunTimeError);
}

TEST(cmdRecord, ErrorOutsideATrapLeavesTheCommandsDisabled) {
  TestWorkstation station;
  station.state.LogRoot = "C:\\gone\\";
  EXPECT_THROW(cmdRecord_Click(station.state, station.services), RunTimeError);
  EXPECT_EQ(DisabledCommands(station.state.frmMain).size(), 6u);
}

}  // namespace
}  // namespace logbook
