// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/LogFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>

#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/TestServices.h"

namespace logbook {
namespace {

using test::TestWorkstation;

std::string Root(const std::string& name) {
  return TestWorkstation::kLogRoot + name;
}

std::string NewFolder(TestWorkstation& station) {
  return GetNewFileName(station.state, station.services);
}

TEST(GetNewFileName, FirstLogOfADayHasNumber00AndItsDate) {
  TestWorkstation station;
  EXPECT_EQ(NewFolder(station), Root("26111500\\"));
  EXPECT_EQ(station.disk.Get(Root("26111500\\logfile.ini")),
            "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n");
}

TEST(GetNewFileName, SecondLogOfTheSameDayHasNumber01) {
  TestWorkstation station;
  NewFolder(station);
  EXPECT_EQ(NewFolder(station), Root("26111501\\"));
}

TEST(GetNewFileName, TwoRecordingsInOneSecondHaveTheSameDate) {
  TestWorkstation station;
  NewFolder(station);
  NewFolder(station);
  EXPECT_EQ(station.disk.Get(Root("26111500\\logfile.ini")),
            station.disk.Get(Root("26111501\\logfile.ini")));
}

TEST(GetNewFileName, FirstGapIsFilled) {
  TestWorkstation station;
  for (const char* name : {"26111500", "26111501", "26111503"})
    station.disk.MakeFolders(Root(name));
  EXPECT_EQ(NewFolder(station), Root("26111502\\"));
}

TEST(GetNewFileName, NumbersAreTwoUpperCaseHexadecimalDigits) {
  struct Case {
    int taken;
    const char* suffix;
  };
  for (const Case& each :
       {Case{10, "0A"}, Case{15, "0F"}, Case{16, "10"}, Case{254, "FE"}, Case{255, "FF"}}) {
    TestWorkstation station;
    for (int i = 0; i < each.taken; ++i) {
      char name[16];
      std::snprintf(name, sizeof name, "261115%02X", i);
      station.disk.MakeFolders(Root(name));
    }
    EXPECT_EQ(NewFolder(station), Root("261115") + each.suffix + "\\") << each.taken;
    EXPECT_TRUE(station.messages.shown.empty());
  }
}

TEST(GetNewFileName, UsedUpDayGivesTheMessageAndNoFolder) {
  TestWorkstation station;
  for (int i = 0; i < 256; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "261115%02X", i);
    station.disk.MakeFolders(Root(name));
  }
  EXPECT_EQ(NewFolder(station), "");
  EXPECT_EQ(station.RootEntries().size(), 256u);
  ASSERT_EQ(station.messages.shown.size(), 1u);
  const Message& message = station.messages.shown[0];
  EXPECT_EQ(message.Text, "There are 256 or more logs in Log Folder. Recording new log is failed!");
  EXPECT_EQ(message.Icon, MessageIcon::kExclamation);
  EXPECT_EQ(message.Buttons, MessageButtons::kOk);
  EXPECT_FALSE(message.Title.has_value());
}

TEST(GetNewFileName, FolderFullOfOtherDaysStillRecords) {
  TestWorkstation station;
  for (int i = 0; i < 256; ++i) {
    char name[16];
    std::snprintf(name, sizeof name, "261114%02X", i);
    station.disk.MakeFolders(Root(name));
  }
  EXPECT_EQ(NewFolder(station), Root("26111500\\"));
}

TEST(GetNewFileName, FileNamedLikeACandidateIsSkipped) {
  TestWorkstation station;
  station.disk.Put(Root("26111500"), "a file");
  EXPECT_EQ(NewFolder(station), Root("26111501\\"));
  EXPECT_EQ(station.disk.Get(Root("26111500")), "a file");
}

TEST(GetNewFileName, NameThatALinkAPipeOrASocketHasIsTaken) {
  TestWorkstation station;
  const auto native = [&](const char* name) { return station.disk.Native(Root(name)); };
  std::filesystem::create_symlink("nowhere", native("26111500"));
  ASSERT_EQ(mkfifo(native("26111501").c_str(), 0600), 0);
  ASSERT_EQ(mknod(native("26111502").c_str(), S_IFSOCK | 0600, 0), 0);
  EXPECT_EQ(NewFolder(station), Root("26111503\\"));
  EXPECT_TRUE(std::filesystem::is_symlink(native("26111500")));
}

TEST(GetNewFileName, NameInAnotherCaseIsTaken) {
  TestWorkstation station;
  for (int i = 0; i < 10; ++i) station.disk.MakeFolders(Root("2611150" + std::to_string(i)));
  station.disk.MakeFolders(Root("2611150a"));
  EXPECT_EQ(NewFolder(station), Root("2611150B\\"));
}

TEST(GetNewFileName, YearPartOf2100Is00) {
  TestWorkstation station;
  station.clock.now = {2100, 1, 1, 0, 0, 0};
  EXPECT_EQ(NewFolder(station), Root("00010100\\"));
  EXPECT_EQ(station.disk.Get(Root("00010100\\logfile.ini")),
            "[LogFile]\r\nDate=01/01/2100 00:00:00\r\n");
}

// The name takes over the day that the date tells, however late it is.
TEST(GetNewFileName, TheClockIsReadOnce) {
  TestWorkstation station;
  station.clock.now = {2026, 12, 31, 23, 59, 59};
  station.clock.on_now = [&] { station.clock.now = {2027, 1, 1, 0, 0, 0}; };
  EXPECT_EQ(NewFolder(station), Root("26123100\\"));
  EXPECT_EQ(station.disk.Get(Root("26123100\\logfile.ini")),
            "[LogFile]\r\nDate=12/31/2026 23:59:59\r\n");
}

TEST(GetNewFileName, DateThatCannotBeWrittenIsARunTimeError) {
  TestWorkstation station;
  const test::SmallFilesOnly full_disk(1);
  EXPECT_EQ(test::NumberRaisedBy([&] { NewFolder(station); }), 75);
  EXPECT_TRUE(station.disk.Has(Root("26111500")));
  EXPECT_FALSE(station.disk.Has(Root("26111500\\logfile.ini")));
}

TEST(GetNewFileName, FolderThatCannotBeMadeIsARunTimeError) {
  TestWorkstation station;
  station.state.LogRoot = "C:\\gone\\";
  try {
    NewFolder(station);
    FAIL() << "no error";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), ErrorNumber::kPathNotFound);
  }
}

}  // namespace
}  // namespace logbook
