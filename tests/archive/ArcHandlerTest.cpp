// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/ArcHandler.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <random>

#include "FailingRename.h"
#include "archive/Archive.h"
#include "base/Profile.h"
#include "loglist/LogList.h"
#include "support/RunProgram.h"
#include "support/TestServices.h"

namespace logbook::test {
namespace {

class ArcHandlerTest : public testing::Test {
 protected:
  ArcHandlerTest() {
    for (const char* name : {"26111500", "26111501", "26111502", "26111503"})
      station.MakeLog(name, "11/15/2026 05:09:59", "comment");
    Init_FileList(station.state, station.services);
  }

  void Select(std::initializer_list<int> rows) {
    for (const int row : rows) station.state.ListView1.Row(row).Selected = true;
  }
  void Archive() { ArchiveLogs(station.state, station.services); }
  std::string StoredFolder() {
    return GetPrivateProfileString(station.disk, "PCS,1", "ARCHIVE_FOLDER", "(none)", 260,
                                   std::string(TestWorkstation::kExePath) + "qrxgen.ist");
  }
  void Store(const std::string& folder) {
    WritePrivateProfileString(station.disk, "PCS,1", "ARCHIVE_FOLDER", folder,
                              std::string(TestWorkstation::kExePath) + "qrxgen.ist");
  }
  std::string Names(const std::string& zip) {
    return RunProgram("unzip -Z1 " + Quoted(station.disk.Native(zip))).output;
  }

  TestWorkstation station;
};

TEST_F(ArcHandlerTest, WithoutASelectionATwoLineMessageComesAndNoDialog) {
  Archive();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  const Message& message = station.messages.shown[0];
  EXPECT_EQ(message.Text,
            "The log(s) is not selected to be archived.\r"
            "Please select log(s) from the list of Maintenance logs.");
  EXPECT_EQ(message.Icon, MessageIcon::kInformation);
  EXPECT_EQ(message.Buttons, MessageButtons::kOk);
  EXPECT_EQ(message.Title, "Archive Log");
  EXPECT_TRUE(station.save.requests.empty());
}

TEST_F(ArcHandlerTest, AnotherLogThatDiffersInCaseIsNotTakenForOneThatHasVanished) {
  station.MakeLog("Pump", "d", "comment");
  Init_FileList(station.state, station.services);
  const std::string root = station.disk.Native(TestWorkstation::kLogRoot);
  std::filesystem::rename(root + "Pump", root + "pump");
  Select({5});
  station.save.answer = "C:\\a.zip";
  Archive();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "Failed to archive log(s).\rError Code:2");
  EXPECT_FALSE(station.disk.Has("C:\\a.zip"));
}

TEST_F(ArcHandlerTest, TheDefaultFolderIsStoredOnTheVeryFirstUseAlsoWithoutASelection) {
  Archive();
  EXPECT_EQ(StoredFolder(), "C:\\ZALM_ARC\\");
  EXPECT_FALSE(station.disk.Has("C:\\ZALM_ARC"));
}

TEST_F(ArcHandlerTest, TheDialogAsksInTheWordsOfTheStringTable) {
  Select({1});
  station.clock.now = {2026, 11, 5, 14, 7, 0};
  Archive();
  ASSERT_EQ(station.save.requests.size(), 1u);
  const SaveRequest& request = station.save.requests[0];
  EXPECT_EQ(request.Title, "Enter the archive filename");
  EXPECT_EQ(request.DefaultExtension, ".zip");
  EXPECT_EQ(request.Filter, "Archive file(*.zip)|*.zip");
  EXPECT_EQ(request.InitialFolder, "C:\\ZALM_ARC\\");
  EXPECT_EQ(request.FileName, "m26B051407.zip");
  EXPECT_TRUE(request.OverwritePrompt);
  EXPECT_TRUE(request.PathMustExist);
  EXPECT_TRUE(request.NoReadOnlyReturn);
}

TEST_F(ArcHandlerTest, TheArchiveFolderIsMadeBeforeTheDialogOpens) {
  Select({1});
  Archive();
  EXPECT_TRUE(station.disk.Has("C:\\ZALM_ARC"));
}

TEST_F(ArcHandlerTest, AnArchiveFolderThatCannotBeMadeIsPassedOver) {
  Store("C:\\no\\such\\place\\");
  Select({1});
  Archive();
  ASSERT_EQ(station.save.requests.size(), 1u);
  EXPECT_EQ(station.save.requests[0].InitialFolder, "C:\\no\\such\\place\\");
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST_F(ArcHandlerTest, CancelLeavesTheFolderAsItWasAndMakesNoFile) {
  Store("C:\\old\\");
  Select({1, 2});
  Archive();
  EXPECT_EQ(StoredFolder(), "C:\\old\\");
  EXPECT_TRUE(station.messages.shown.empty());
  EXPECT_EQ(RunProgram("ls " + Quoted(station.disk.Native("C:\\old"))).output, "");
}

TEST_F(ArcHandlerTest, ThreeSelectedLogsGoIntoOneZipInListOrder) {
  Select({4, 1, 3});
  station.save.answer = "C:\\ZALM_ARC\\three.zip";
  Archive();
  EXPECT_EQ(Names("C:\\ZALM_ARC\\three.zip"),
            "26111500/\n26111500/comment.txt\n26111500/logfile.ini\n"
            "26111502/\n26111502/comment.txt\n26111502/logfile.ini\n"
            "26111503/\n26111503/comment.txt\n26111503/logfile.ini\n");
  EXPECT_TRUE(station.messages.shown.empty()) << "a finished archive is not announced";
}

TEST_F(ArcHandlerTest, TheLogsStayWhereTheyAre) {
  Select({1});
  station.save.answer = "C:\\ZALM_ARC\\one.zip";
  const auto before = station.RootEntries();
  Archive();
  EXPECT_EQ(station.RootEntries(), before);
}

TEST_F(ArcHandlerTest, AnOldFileOfTheChosenNameIsReplacedNotAddedTo) {
  Select({1});
  station.save.answer = "C:\\ZALM_ARC\\a.zip";
  Archive();
  station.state.ListView1.Row(1).Selected = false;
  Select({2});
  Archive();
  EXPECT_EQ(Names("C:\\ZALM_ARC\\a.zip"),
            "26111501/\n26111501/comment.txt\n26111501/logfile.ini\n");
}

TEST_F(ArcHandlerTest, TheWindowsArePaintedBetweenTheFiles) {
  Select({1, 2, 3});
  station.events.paints = 0;
  station.save.answer = "C:\\ZALM_ARC\\a.zip";
  Archive();
  EXPECT_GE(station.events.paints, 3 * 2) << "each log has two files";
  EXPECT_EQ(station.events.works, 0);
}

TEST_F(ArcHandlerTest, TheWindowsArePaintedBetweenThePartsOfALargeFile) {
  std::mt19937 random;
  std::string bytes(4'000'000, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  station.disk.Put(station.InLog("26111500", "acqlog.txt"), bytes);
  Select({1});
  station.events.paints = 0;
  station.save.answer = "C:\\ZALM_ARC\\a.zip";
  Archive();
  EXPECT_GE(station.events.paints, 100);
}

TEST_F(ArcHandlerTest, AnOldFileThatCannotBeDeletedShowsInTheCode) {
  Select({1});
  station.disk.Put("C:\\ZALM_ARC\\a.zip", "read-only");
  chmod(station.disk.Native("C:\\ZALM_ARC\\a.zip").c_str(), 0444);
  station.save.answer = "C:\\ZALM_ARC\\a.zip";
  Archive();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "Failed to archive log(s).\rError Code:5");
  EXPECT_EQ(station.disk.Get("C:\\ZALM_ARC\\a.zip"), "read-only");
}

TEST_F(ArcHandlerTest, JanuaryToSeptemberHaveTheirDigitAndTheLaterMonthsALetter) {
  const std::pair<int, const char*> months[] = {{1, "m261010000.zip"},
                                                {9, "m269010000.zip"},
                                                {10, "m26A010000.zip"},
                                                {11, "m26B010000.zip"},
                                                {12, "m26C010000.zip"}};
  for (const auto& [month, name] : months) {
    station.clock.now = {2026, month, 1, 0, 0, 0};
    EXPECT_EQ(GetArchiveName(station.services), name);
  }
}

TEST_F(ArcHandlerTest, TheYearHasTwoDigits) {
  station.clock.now = {2105, 3, 31, 23, 59, 59};
  EXPECT_EQ(GetArchiveName(station.services), "m053312359.zip");
}

TEST_F(ArcHandlerTest, AnotherFolderIsTheNextDefaultWithItsBackslash) {
  Select({1});
  station.disk.MakeFolders("C:\\My Archive\\inner");
  station.save.answer = "C:\\My Archive\\inner\\a.b.zip";
  Archive();
  EXPECT_EQ(StoredFolder(), "C:\\My Archive\\inner\\");
  station.save.answer.reset();
  Archive();
  EXPECT_EQ(station.save.requests.back().InitialFolder, "C:\\My Archive\\inner\\");
}

TEST_F(ArcHandlerTest, ADrivesRootIsTheNextDefaultWithItsBackslash) {
  Select({1});
  station.save.answer = "C:\\a.zip";
  Archive();
  EXPECT_EQ(StoredFolder(), "C:\\");
}

TEST_F(ArcHandlerTest, AFailureAtTheSecondLogShowsTheCodeAndLeavesTheFirstLogInTheFile) {
  Store("C:\\old\\");
  station.disk.MakeFolders("C:\\new");
  Select({1, 2, 3});
  RunProgram("rm -r " + Quoted(station.disk.Native(TestWorkstation::InLog("26111501", ""))));
  station.save.answer = "C:\\new\\a.zip";
  Archive();
  ASSERT_EQ(station.messages.shown.size(), 1u);
  const Message& message = station.messages.shown[0];
  EXPECT_EQ(message.Text, "Failed to archive log(s).\rError Code:2");
  EXPECT_EQ(message.Icon, MessageIcon::kCritical);
  EXPECT_EQ(message.Buttons, MessageButtons::kOk);
  EXPECT_EQ(message.Title, "Archive Log");
  EXPECT_EQ(Names("C:\\new\\a.zip"), "26111500/\n26111500/comment.txt\n26111500/logfile.ini\n");
  EXPECT_EQ(StoredFolder(), "C:\\old\\");
}

TEST_F(ArcHandlerTest, AZipFileThatCannotGetItsNameIsAFailureThoughEveryLogWasPacked) {
  Store("C:\\old\\");
  station.disk.MakeFolders("C:\\new");
  Select({1, 2});
  station.save.answer = "C:\\new\\a.zip";
  {
    const FailingRename failing;
    Archive();
  }
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text, "Failed to archive log(s).\rError Code:5");
  EXPECT_EQ(StoredFolder(), "C:\\old\\");
  EXPECT_FALSE(station.disk.Has("C:\\new\\a.zip"));
}

TEST_F(ArcHandlerTest, AtMost259CharactersOfTheFolderAreRead) {
  Select({1});
  for (const std::size_t size : {258, 259, 260, 300}) {
    const std::string folder = "C:\\" + std::string(size - 3, 'x');
    Store(folder);
    station.save.requests.clear();
    Archive();
    EXPECT_EQ(station.save.requests.at(0).InitialFolder, folder.substr(0, 259)) << size;
  }
}

}  // namespace
}  // namespace logbook::test
