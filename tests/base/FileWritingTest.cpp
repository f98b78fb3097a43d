// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "base/Files.h"
#include "base/NativeFile.h"
#include "base/Profile.h"
#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

// Everything below a folder that a failed write could have changed: names, modes and bytes.
std::string Picture(const TestMachine& machine) {
  std::string picture;
  for (const auto& entry : fs::recursive_directory_iterator(machine.home())) {
    struct stat status = {};
    lstat(entry.path().c_str(), &status);
    picture += entry.path().string() + " " + std::to_string(status.st_mode) + " " +
               std::to_string(status.st_ino) + " ";
    if (entry.is_regular_file()) picture += ReadNativeFile(entry.path().string());
    picture += "\n";
  }
  return picture;
}

mode_t ModeOf(const TestMachine& machine, const char* path) {
  struct stat status = {};
  stat(machine.Native(path).c_str(), &status);
  return status.st_mode & 07777;
}

TEST(FileWritingTest, AWriteMakesTheFileOrReplacesAllItsBytes) {
  const TestMachine machine;
  WriteFile(machine, "C:\\a.txt", "a long first text");
  EXPECT_EQ(machine.Get("C:\\a.txt"), "a long first text");
  WriteFile(machine, "C:\\A.TXT", "short");
  EXPECT_EQ(machine.Get("C:\\a.txt"), "short");
  WriteFile(machine, "C:\\a.txt", "");
  EXPECT_EQ(machine.Get("C:\\a.txt"), "");
}

ino_t NumberOf(const TestMachine& machine, const char* path) {
  struct stat status = {};
  stat(machine.Native(path).c_str(), &status);
  return status.st_ino;
}

TEST(FileWritingTest, AFileThatCanBeMadeAgainIsWrittenOnlyIfItDiffersAndWaitsForNoDisk) {
  const TestMachine machine;
  const DiskCalls calls;
  WriteMadeFile(machine, "C:\\a.rpt", "one");
  const ino_t first = NumberOf(machine, "C:\\a.rpt");
  WriteMadeFile(machine, "C:\\A.rpt", "one");
  EXPECT_EQ(NumberOf(machine, "C:\\a.rpt"), first);
  for (const char* bytes : {"two", "", "three"}) {
    WriteMadeFile(machine, "C:\\a.rpt", bytes);
    EXPECT_EQ(machine.Get("C:\\a.rpt"), bytes);
  }
  EXPECT_EQ(DiskCalls::Count("fsync"), 0);
  WriteFile(machine, "C:\\a.rpt", "three");
  EXPECT_EQ(DiskCalls::Count("fsync"), 2) << "file and folder";
}

TEST(FileWritingTest, AFileThatCanBeMadeAgainMustBeWritableEvenIfItHoldsTheBytes) {
  const TestMachine machine;
  machine.Put("C:\\a.rpt", "one");
  fs::permissions(machine.Native("C:\\a.rpt"), fs::perms::owner_read);
  EXPECT_EQ(ErrorOf([&] { WriteMadeFile(machine, "C:\\a.rpt", "one"); }),
            ErrorNumber::kPathFileAccess);
}

TEST(FileWritingTest, AWriteLeavesNoOtherFileBehind) {
  const TestMachine machine;
  WriteFile(machine, "C:\\a.txt", "one");
  WriteFile(machine, "C:\\a.txt", "two");
  EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "v", "C:\\b.ini"));
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(machine.Native("C:\\"))) {
    names.push_back(entry.path().filename().string());
  }
  EXPECT_THAT(names, testing::UnorderedElementsAre("a.txt", "b.ini"));
}

TEST(FileWritingTest, AReplacedFileKeepsItsMode) {
  const TestMachine machine;
  for (const mode_t mode : {0600, 0640, 0666, 0755}) {
    machine.Put("C:\\a.txt", "old");
    chmod(machine.Native("C:\\a.txt").c_str(), mode);
    WriteFile(machine, "C:\\a.txt", "new");
    EXPECT_EQ(ModeOf(machine, "C:\\a.txt"), mode);
    EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "v", "C:\\a.txt"));
    EXPECT_EQ(ModeOf(machine, "C:\\a.txt"), mode);
  }
}

TEST(FileWritingTest, ANewFileHasTheModeThatTheUsersMaskLeaves) {
  const TestMachine machine;
  const mode_t old_mask = umask(027);
  WriteFile(machine, "C:\\a.txt", "new");
  umask(old_mask);
  EXPECT_EQ(ModeOf(machine, "C:\\a.txt"), 0640u);
}

TEST(FileWritingTest, TheTargetOfALinkIsReplacedAndTheLinkStays) {
  const TestMachine machine;
  machine.Put("C:\\real\\a.ini", "[s]\r\nk=old\r\n");
  fs::create_symlink("real/a.ini", machine.Native("C:\\link.ini"));
  fs::create_symlink(machine.Native("C:\\link.ini"), machine.Native("C:\\link2.ini"));
  EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "new", "C:\\link2.ini"));
  EXPECT_EQ(machine.Get("C:\\real\\a.ini"), "[s]\r\nk=new\r\n");
  EXPECT_TRUE(fs::is_symlink(machine.Native("C:\\link.ini")));
  EXPECT_TRUE(fs::is_symlink(machine.Native("C:\\link2.ini")));
  WriteFile(machine, "C:\\link.ini", "whole");
  EXPECT_EQ(machine.Get("C:\\real\\a.ini"), "whole");
  EXPECT_TRUE(fs::is_symlink(machine.Native("C:\\link.ini")));
}

TEST(FileWritingTest, ALinkThatLeadsNowhereGetsItsTargetMade) {
  const TestMachine machine;
  machine.MakeFolders("C:\\real");
  fs::create_symlink("real/a.txt", machine.Native("C:\\link.txt"));
  WriteFile(machine, "C:\\link.txt", "made");
  EXPECT_EQ(machine.Get("C:\\real\\a.txt"), "made");
  EXPECT_TRUE(fs::is_symlink(machine.Native("C:\\link.txt")));
}

TEST(FileWritingTest, LinksInACircleAreError57AndChangeNothing) {
  const TestMachine machine;
  fs::create_symlink("b", machine.Native("C:\\a"));
  fs::create_symlink("a", machine.Native("C:\\b"));
  EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, "C:\\a", "x"); }), 57);
  EXPECT_TRUE(fs::is_symlink(machine.Native("C:\\a")));
}

TEST(FileWritingTest, AWriteThatCannotBeDoneRaisesItsNumberAndChangesNothing) {
  const TestMachine machine;
  machine.Put("C:\\locked.ini", "[s]\r\nk=v\r\n");
  chmod(machine.Native("C:\\locked.ini").c_str(), 0444);
  machine.Put("C:\\folder\\inside.txt", "inside");
  machine.Put("C:\\file", "file");
  const std::string before = Picture(machine);
  const std::pair<const char*, int> cases[] = {
      {"C:\\locked.ini", 75},  {"C:\\folder", 75}, {"", 75},
      {"C:\\none\\a.ini", 76}, {"Q:\\a.ini", 76},  {"C:\\file\\a.ini", 76},
  };
  for (const auto& [path, number] : cases) {
    EXPECT_EQ(NumberRaisedBy([&, p = path] { WriteFile(machine, p, "x"); }), number) << path;
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", "x", path)) << path;
    EXPECT_EQ(Picture(machine), before) << path;
  }
}

TEST(FileWritingTest, AWriteThatTheSystemRefusesIsError70AndChangesNothing) {
  const TestMachine machine;
  chmod(machine.home().c_str(), 0755);
  machine.Put("C:\\others.ini", "[s]\r\nk=v\r\n");
  machine.Put("C:\\secret.ini", "[s]\r\nk=v\r\n");
  chmod(machine.Native("C:\\others.ini").c_str(), geteuid() == 0 ? 0644 : 0444);
  chmod(machine.Native("C:\\secret.ini").c_str(), 0200);
  chmod(machine.Native("C:\\").c_str(), 0777);
  const bool is_root = geteuid() == 0;
  const std::string before = is_root ? Picture(machine) : std::string();
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, "C:\\others.ini", "x"); }),
              is_root ? 70 : 75);
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", "x", "C:\\others.ini"));
    // What cannot be read must not be replaced by the one new key.
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", "x", "C:\\secret.ini"));
  }
  if (is_root) {
    EXPECT_EQ(Picture(machine), before);
  }
}

TEST(FileWritingTest, AFolderThatMayBeChangedButNotListedIsWrittenTo) {
  const TestMachine machine;
  machine.MakeFolders("C:\\box");
  chmod(machine.home().c_str(), 0755);
  chmod(machine.Native("C:\\box").c_str(), 0333);
  {
    const AsOrdinaryUser user;
    WriteFile(machine, "C:\\box\\a.txt", "one");
    WriteFile(machine, "C:\\box\\a.txt", "two");
  }
  chmod(machine.Native("C:\\box").c_str(), 0755);
  EXPECT_EQ(machine.Get("C:\\box\\a.txt"), "two");
}

TEST(FileWritingTest, ADiskWithoutRoomIsError61AndTheOldFileStays) {
  const TestMachine machine;
  machine.Put("C:\\a.ini", "[s]\r\nk=v\r\n");
  const std::string before = Picture(machine);
  {
    const SmallFilesOnly limit(16);
    EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, "C:\\a.ini", std::string(100, 'x')); }), 61);
    EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, "C:\\b.ini", std::string(100, 'x')); }), 61);
    EXPECT_FALSE(WritePrivateProfileString(machine, "s", "k", std::string(100, 'x'), "C:\\a.ini"));
  }
  EXPECT_EQ(Picture(machine), before);
}

TEST(FileWritingTest, ACopyThatTheDiskHasNoRoomForLeavesTheOldFile) {
  const TestMachine machine;
  machine.Put("C:\\from.txt", std::string(1000, 'x'));
  machine.Put("C:\\to.txt", "old");
  {
    const SmallFilesOnly limit(16);
    EXPECT_EQ(NumberRaisedBy([&] { CopyFile(machine, "C:\\from.txt", "C:\\to.txt"); }), 61);
  }
  EXPECT_EQ(machine.Get("C:\\to.txt"), "old");
  CopyFile(machine, "C:\\from.txt", "C:\\to.txt");
  EXPECT_EQ(machine.Get("C:\\to.txt"), std::string(1000, 'x'));
}

TEST(FileWritingTest, AFileThatCanBeMadeAgainIsWrittenWhereItCannotBeRead) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "bytes");
  const DiskCalls calls;
  DiskCalls::FailReads(machine.Native("C:\\a.txt"), 2);
  WriteMadeFile(machine, "C:\\a.txt", "bytes");
  EXPECT_EQ(DiskCalls::Count("rename a.txt"), 1);
}

TEST(FileWritingTest, FewerThan40LinksAreFollowedOneByOne) {
  const TestMachine machine;
  machine.Put("C:\\file.txt", "old");
  const std::filesystem::path folder =
      std::filesystem::path(machine.Native("C:\\file.txt")).parent_path();
  std::filesystem::create_symlink("file.txt", folder / "link1");
  for (int link = 2; link <= 40; ++link)
    std::filesystem::create_symlink("link" + std::to_string(link - 1),
                                    folder / ("link" + std::to_string(link)));
  WriteFile(machine, "C:\\link38", "38");
  EXPECT_EQ(machine.Get("C:\\file.txt"), "38");
  WriteFile(machine, "C:\\link39", "39");
  EXPECT_EQ(machine.Get("C:\\file.txt"), "39");
  EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, "C:\\link40", "40"); }), 57);
  EXPECT_EQ(machine.Get("C:\\file.txt"), "39");
}

TEST(FileWritingTest, WhatKilledWritersLeftIsGoneAfterTheNextWrite) {
  const TestMachine machine;
  const std::string name = "C:\\" + std::string(kTemporaryName);
  for (const char* number : {"", "4711", "4711-2"}) machine.Put(name + number, "half a fi");
  WriteFile(machine, "C:\\a.txt", "whole");
  for (const char* number : {"", "4711", "4711-2"}) EXPECT_FALSE(machine.Has(name + number));
  EXPECT_EQ(machine.Get("C:\\a.txt"), "whole");
}

TEST(FileWritingTest, WhatElseBearsTheTemporaryNameDoesNotStopAWrite) {
  const TestMachine machine;
  const std::string name = "C:\\" + std::string(kTemporaryName);
  const std::string numbered = name + std::to_string(getpid());
  machine.MakeFolders(name);
  machine.MakeFolders(numbered);
  fs::create_symlink("nowhere", machine.Native(numbered + "-1"));
  WriteFile(machine, "C:\\a.txt", "whole");
  EXPECT_EQ(machine.Get("C:\\a.txt"), "whole");
  EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "v", "C:\\a.ini"));
  EXPECT_TRUE(fs::is_directory(machine.Native(name)));
  EXPECT_TRUE(fs::is_symlink(machine.Native(numbered + "-1")));
  EXPECT_FALSE(machine.Has(numbered + "-2"));
}

TEST(FileWritingTest, AFileNameOfTheGreatestLengthCanBeWritten) {
  const TestMachine machine;
  const std::string path = "C:\\" + std::string(255, 'n');
  WriteFile(machine, path, "x");
  EXPECT_EQ(machine.Get(path), "x");
}

}  // namespace
}  // namespace logbook::test
