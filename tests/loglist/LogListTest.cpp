// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/LogList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "base/Profile.h"
#include "support/DiskCalls.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::TestWorkstation;
using testing::ElementsAre;

constexpr const char* kHeader =
    "Date Logged,Logbook Folder,Item 1,Item 2,Item 3,Item 4,Item 5,Item 6,Comment\r\n";
const std::string kList = std::string(TestWorkstation::kLogRoot) + "listlog.csv";

void MakeFolders(TestWorkstation& station, int count) {
  for (int i = 0; i < count; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "log%05d", i);
    station.disk.MakeFolders(std::string(TestWorkstation::kLogRoot) + name);
  }
}

void Rebuild(TestWorkstation& station) {
  Init_FileList(station.state, station.services);
}

TEST(Init_FileList, EmptyRootGivesNoRowsAndTheHeaderLineAlone) {
  TestWorkstation station;
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 0);
  EXPECT_TRUE(station.state.ListView1.Rows.empty());
  EXPECT_EQ(station.disk.Get(kList), kHeader);
}

TEST(Init_FileList, RowsShowDateFolderAndCommentInScanOrder) {
  TestWorkstation station;
  station.MakeLog("26111501", "11/15/2026 06:00:00", "second");
  station.MakeLog("26111500", "11/15/2026 05:09:59", "first");
  Rebuild(station);
  ASSERT_EQ(station.state.LogCount, 2);
  const ListRow& row = station.state.ListView1.Row(1);
  EXPECT_EQ(row.Key, "Item1");
  EXPECT_EQ(row.Text, "11/15/2026 05:09:59");
  EXPECT_EQ(row.SubItem(1), "26111500");
  EXPECT_EQ(row.SubItem(8), "first");
  EXPECT_EQ(station.state.FileList[2].Name, "26111501");
  EXPECT_EQ(station.state.FileList[2].Val1, "0");
  EXPECT_EQ(station.disk.Get(kList), std::string(kHeader) +
                                         "11/15/2026 05:09:59,26111500,,,,,,,first\r\n"
                                         "11/15/2026 06:00:00,26111501,,,,,,,second\r\n");
}

TEST(Init_FileList, TheWindowsArePaintedBetweenTheFilesOfTheLogs) {
  TestWorkstation station;
  for (const char* name : {"26111500", "26111501", "26111502"}) {
    station.MakeLog(name, "11/15/2026 05:09:59");
    station.disk.Put(station.InLog(name, "auser.txt"), "1,2,3");
  }
  FillCatalogues(station.state.catalogues);
  station.disk.Put(station.state.IniFile, "[Header3]\r\nCat=Meter\r\nItem=1\r\n");
  Rebuild(station);
  EXPECT_EQ(station.events.paints, 9);
  EXPECT_EQ(station.events.works, 0);
  station.disk.Put(station.InLog("26111501", "comment.txt"), "");
  EXPECT_THROW(Rebuild(station), RunTimeError);
  EXPECT_EQ(station.events.works, 0) << "an error ends the work too";
}

TEST(Init_FileList, FilesInTheRootAreSkipped) {
  TestWorkstation station;
  station.disk.Put(kList, "old");
  station.disk.Put(std::string(TestWorkstation::kLogRoot) + "26111500.qkvzip", "package");
  station.MakeLog("26111500", "11/15/2026 05:09:59");
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 1);
}

TEST(Init_FileList, AnySubFolderCountsAsALogAndMissingFilesReadAsEmpty) {
  TestWorkstation station;
  station.disk.MakeFolders(std::string(TestWorkstation::kLogRoot) + "no log at all");
  Rebuild(station);
  ASSERT_EQ(station.state.LogCount, 1);
  EXPECT_EQ(station.state.ListView1.Row(1).Text, "");
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(1), "no log at all");
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(8), "");
}

TEST(Init_FileList, UnreadableEntryIsSkippedSilently) {
  TestWorkstation station;
  std::filesystem::create_symlink(
      "/nowhere/at/all", station.disk.Native(std::string(TestWorkstation::kLogRoot) + "26111500"));
  station.MakeLog("26111501", "11/15/2026 05:09:59");
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 1);
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST(Init_FileList, Of255FoldersNoMessageIsGiven) {
  TestWorkstation station;
  MakeFolders(station, 255);
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 255);
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST(Init_FileList, Of256FoldersAllAreListedAndTheMessageSpeaksOf257) {
  TestWorkstation station;
  MakeFolders(station, 256);
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 256);
  EXPECT_EQ(station.state.ListView1.Rows.size(), 256u);
  ASSERT_EQ(station.messages.shown.size(), 1u);
  EXPECT_EQ(station.messages.shown[0].Text,
            "There are 257 or more logs in Log Folder. Logbook can not display all logs!");
  EXPECT_EQ(station.messages.shown[0].Icon, MessageIcon::kExclamation);
}

TEST(Init_FileList, Of300FoldersTheFirst256AreListedWithOneMessage) {
  TestWorkstation station;
  MakeFolders(station, 300);
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 256);
  EXPECT_EQ(station.state.FileList[256].Name, "log00255");
  EXPECT_EQ(station.messages.shown.size(), 1u);
}

TEST(Init_FileList, Element256KeepsItsOldContentWhenFewerLogsAreFound) {
  TestWorkstation station;
  MakeFolders(station, 256);
  Rebuild(station);
  std::filesystem::remove_all(station.disk.Native(TestWorkstation::kLogRoot));
  station.disk.MakeFolders(TestWorkstation::kLogRoot);
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 0);
  EXPECT_EQ(station.state.FileList[255].Name, "");
  EXPECT_EQ(station.state.FileList[256].Name, "log00255");
}

TEST(Init_FileList, CommaInACommentMakesOneMoreField) {
  TestWorkstation station;
  station.MakeLog("26111500", "d", "cones, torch");
  Rebuild(station);
  EXPECT_EQ(station.disk.Get(kList), std::string(kHeader) + "d,26111500,,,,,,,cones, torch\r\n");
}

TEST(Init_FileList, OnlyTheFirstLineOfACommentIsShown) {
  TestWorkstation station;
  station.MakeLog("26111500", "d", "first\r\nsecond");
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(8), "first");
}

TEST(Init_FileList, OfALongFirstLine64KilobytesAreShownAndNoMoreIsRead) {
  TestWorkstation station;
  station.MakeLog("26111500", "d", std::string(70000, 'x') + "\r\nsecond");
  const std::string huge = station.disk.Native(TestWorkstation::InLog("26111501", "comment.txt"));
  station.MakeLog("26111501", "d", "y");
  std::filesystem::resize_file(huge, std::uintmax_t{1} << 30);
  const test::DiskCalls calls;
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(8), std::string(65536, 'x'));
  EXPECT_EQ(station.state.ListView1.Row(2).SubItem(8), "y");
  std::filesystem::resize_file(huge, 0);
  std::filesystem::resize_file(huge, std::uintmax_t{1} << 30);
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Row(2).SubItem(8), std::string(65536, '\0'));
  EXPECT_LE(test::DiskCalls::Count("read " + huge), 3);
}

TEST(Init_FileList, CommentWithoutAByteIsARunTimeError) {
  TestWorkstation station;
  station.MakeLog("26111500", "d");
  station.disk.Put(TestWorkstation::InLog("26111500", "comment.txt"), "");
  try {
    Rebuild(station);
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kInputPastEndOfFile);
  }
}

TEST(Init_FileList, FolderNamedLikeTheCommentIsNoComment) {
  TestWorkstation station;
  station.MakeLog("26111500", "d");
  station.disk.MakeFolders(TestWorkstation::InLog("26111500", "comment.txt"));
  Rebuild(station);
  ASSERT_EQ(station.state.LogCount, 1);
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(8), "");
}

TEST(Init_FileList, RootThatIsGoneGivesNoRows) {
  TestWorkstation station;
  station.MakeLog("26111500", "d");
  Rebuild(station);
  std::filesystem::remove_all(station.disk.Native(TestWorkstation::kLogRoot));
  Rebuild(station);
  EXPECT_EQ(station.state.LogCount, 0);
  EXPECT_TRUE(station.state.ListView1.Rows.empty());
}

TEST(Init_FileList, RootThatCannotBeScannedIsARunTimeError) {
  TestWorkstation station;
  const std::string root = station.disk.Native("C:\\circle");
  std::filesystem::create_directory_symlink(root, root);
  station.state.LogRoot = "C:\\circle\\";
  EXPECT_THROW(Rebuild(station), RunTimeError);
}

TEST(Init_FileList, RowsAreNeitherSelectedNorCurrentAfterARebuild) {
  TestWorkstation station;
  station.MakeLog("26111500", "d");
  Rebuild(station);
  station.state.ListView1.Row(1).Selected = true;
  station.state.ListView1.CurrentRow = 1;
  Rebuild(station);
  EXPECT_FALSE(station.state.ListView1.Row(1).Selected);
  EXPECT_EQ(station.state.ListView1.CurrentRow, 0);
}

TEST(Init_FileList, EachModeReadsItsOwnChoiceOfColumns) {
  TestWorkstation station;
  FillCatalogues(station.state.catalogues);
  station.disk.Put(std::string(TestWorkstation::kExePath) + "logbook.ini",
                   "[Header3]\r\nCAT=Meter\r\nITEM=0\r\n"
                   "[Header_CE8]\r\nCat=Meter\r\nItem=0\r\n");
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Column(3).Text, "Inlet Temp (degC)");
  EXPECT_EQ(station.state.ListView1.Column(8).Text, "Item 6");
  station.state.CEMode = true;
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Column(3).Text, "Item 1");
  EXPECT_EQ(station.state.ListView1.Column(8).Text, "Inlet Temp (degC)");
}

TEST(Init_FileList, AProfileOfMoreThan16MegabytesChoosesNoColumns) {
  TestWorkstation station;
  FillCatalogues(station.state.catalogues);
  const std::string profile = std::string(TestWorkstation::kExePath) + "logbook.ini";
  station.disk.Put(profile, "[Header3]\r\nCat=Meter\r\nItem=0\r\n");
  std::filesystem::resize_file(station.disk.Native(profile), kLargestProfile + 1);
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Column(3).Text, "Item 1");
}

TEST(Init_FileList, TextIsInTheCodePageOfTheMachine) {
  TestWorkstation station(932);
  station.MakeLog("26111500", "d", "\x83\x65\x83\x58\x83\x67");
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Row(1).SubItem(8), "テスト");
  EXPECT_EQ(station.disk.Get(kList),
            std::string(kHeader) + "d,26111500,,,,,,,\x83\x65\x83\x58\x83\x67\r\n");
}

TEST(Init_FileList, CategoryOfAnUnknownWordKeepsTheOldHeader) {
  TestWorkstation station;
  Rebuild(station);
  station.disk.Put(std::string(TestWorkstation::kExePath) + "logbook.ini",
                   "[Header3]\r\nCat=Torch\r\nItem=1\r\n[Header4]\r\nCat=meter\r\nItem=1\r\n");
  station.state.ListView1.Column(3).Text = "what stood there";
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Column(3).Text, "what stood there");
  EXPECT_EQ(station.state.ListView1.Column(4).Text, "Item 2");
}

TEST(Init_FileList, UnknownCategoryAtProgramStartLeavesAnEmptyHeader) {
  TestWorkstation station;
  station.disk.Put(std::string(TestWorkstation::kExePath) + "logbook.ini",
                   "[Header3]\r\nCat=Torch\r\n");
  Rebuild(station);
  EXPECT_EQ(station.state.ListView1.Column(3).Text, "");
}

TEST(ColumnSection, EachModeHasItsOwnSections) {
  TestWorkstation station;
  EXPECT_EQ(ColumnSection(station.state, 3), "Header3");
  station.state.CEMode = true;
  EXPECT_EQ(ColumnSection(station.state, 8), "Header_CE8");
}

TEST(SaveList, FailureIsSilentAndTheOldFileStays) {
  TestWorkstation station;
  Rebuild(station);
  std::filesystem::permissions(station.disk.Native(kList), std::filesystem::perms::owner_read);
  station.MakeLog("26111500", "d");
  Rebuild(station);
  EXPECT_EQ(station.disk.Get(kList), kHeader);
  EXPECT_TRUE(station.messages.shown.empty());
}

TEST(ListView1, ColumnsHaveTheirKeysAndWidthsInTwips) {
  const ListView list;
  std::vector<std::string> keys;
  std::vector<int> widths;
  for (const ListColumn& column : list.Columns) {
    keys.push_back(column.Key);
    widths.push_back(column.Width);
  }
  EXPECT_THAT(keys, ElementsAre("Date", "File", "Item1", "Item2", "Item3", "Item4", "Item5",
                                "Item6", "Comment"));
  EXPECT_THAT(widths, ElementsAre(1800, 1000, 600, 600, 600, 600, 600, 600, 1600));
}

}  // namespace
}  // namespace logbook
