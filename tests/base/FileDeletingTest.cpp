// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "base/FileTidying.h"
#include "base/Files.h"
#include "base/NativeFile.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> NamesOf(const std::vector<FolderEntry>& entries) {
  std::vector<std::string> names;
  for (const FolderEntry& entry : entries) names.push_back(entry.name);
  return names;
}

TEST(FileDeletingTest, AnEmptyFolderIsRemovedAndAFullOneStays) {
  const TestMachine machine;
  machine.Put("C:\\full\\a.txt", "a");
  machine.MakeFolders("C:\\empty");
  RemoveFolder(machine, "C:\\empty\\");
  EXPECT_FALSE(Exists(machine, "C:\\empty"));
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, "C:\\full"); }), 75);
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, "C:\\full\\a.txt"); }), 75);
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, "C:\\none"); }), 76);
  EXPECT_EQ(machine.Get("C:\\full\\a.txt"), "a");
}

TEST(FileDeletingTest, ALinkCountsAsWhatItLeadsToAndAsAFileIfThatIsNothing) {
  const TestMachine machine;
  machine.Put("C:\\log\\read-only.txt", "r");
  machine.Put("C:\\log\\file.txt", "f");
  fs::permissions(machine.Native("C:\\log\\read-only.txt"), fs::perms::owner_read);
  const auto link = [&](const char* target) {
    fs::create_symlink(target, machine.Native("C:\\log") + "/link");
    const auto number = NumberRaisedBy([&] { DeleteFile(machine, "C:\\log\\link"); });
    fs::remove(machine.Native("C:\\log") + "/link");
    return number;
  };
  EXPECT_EQ(link("../log"), 75);
  EXPECT_EQ(link("read-only.txt"), 75);
  EXPECT_EQ(link("file.txt"), std::nullopt);
  EXPECT_EQ(link("nowhere"), std::nullopt);
  EXPECT_EQ(machine.Get("C:\\log\\file.txt"), "f");
}

TEST(FileDeletingTest, ANewFolderHasTheModeThatTheUsersMaskLeaves) {
  const TestMachine machine;
  const mode_t mask = umask(027);
  MakeFolder(machine, "C:\\new");
  umask(mask);
  struct stat status = {};
  ASSERT_EQ(stat(machine.Native("C:\\new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0750u);
}

TEST(FileDeletingTest, TidyingDeletesWhatItCanAndRaisesNothing) {
  const TestMachine machine;
  machine.Put("C:\\scraps\\a.txt", "a");
  machine.Put("C:\\scraps\\b.txt", "b");
  fs::permissions(NativePath(machine, "C:\\scraps\\b.txt"), fs::perms::owner_read);
  for (const char* path : {"C:\\scraps\\a.txt", "C:\\scraps\\b.txt", "C:\\scraps\\none.txt",
                           "C:\\none\\a.txt", "C:\\scraps"}) {
    EXPECT_NO_THROW(DeleteFileIgnoringErrors(machine, path)) << path;
  }
  EXPECT_FALSE(Exists(machine, "C:\\scraps\\a.txt"));
  EXPECT_EQ(machine.Get("C:\\scraps\\b.txt"), "b");
}

TEST(FileDeletingTest, WhatAKilledWriterLeftIsNoEntryAndDoesNotKeepAFolder) {
  const TestMachine machine;
  machine.Put("C:\\log\\" + std::string(kTemporaryName), "half a fi");
  EXPECT_TRUE(ScanFolder(machine, "C:\\log").empty());
  machine.Put("C:\\log\\a.txt", "a");
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, "C:\\log"); }), 75);
  EXPECT_TRUE(machine.Has("C:\\log\\" + std::string(kTemporaryName)));
  DeleteFile(machine, "C:\\log\\a.txt");
  // Where a network disk knows no locks, each process has a name of its own.
  machine.Put("C:\\log\\" + std::string(kTemporaryName) + "4711", "half a fi");
  RemoveFolder(machine, "C:\\log");
  EXPECT_FALSE(machine.Has("C:\\log"));
}

TEST(FileDeletingTest, OneFileIsDeleted) {
  const TestMachine machine;
  machine.Put("C:\\f\\a.txt", "");
  machine.Put("C:\\f\\b.txt", "");
  DeleteFile(machine, "C:\\F\\A.TXT");
  EXPECT_FALSE(machine.Has("C:\\f\\a.txt"));
  EXPECT_TRUE(machine.Has("C:\\f\\b.txt"));
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFile(machine, "C:\\f\\a.txt"); }), 53);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFile(machine, "C:\\g\\a.txt"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFile(machine, "C:\\f"); }), 75);
  chmod(machine.Native("C:\\f\\b.txt").c_str(), 0444);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFile(machine, "C:\\f\\b.txt"); }), 75);
  EXPECT_TRUE(machine.Has("C:\\f\\b.txt"));
}

TEST(FileDeletingTest, ALinkIsDeletedAndItsTargetStays) {
  const TestMachine machine;
  machine.Put("C:\\target.txt", "kept");
  fs::create_symlink("target.txt", machine.Native("C:\\link.txt"));
  fs::create_symlink("nowhere", machine.Native("C:\\broken.txt"));
  DeleteFile(machine, "C:\\link.txt");
  DeleteFile(machine, "C:\\broken.txt");
  EXPECT_EQ(machine.Get("C:\\target.txt"), "kept");
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\")), ElementsAre("target.txt"));
}

TEST(FileDeletingTest, DeletingTheFilesOfAFolderSparesFoldersAndHiddenFiles) {
  const TestMachine machine;
  machine.Put("C:\\f\\a.txt", "");
  machine.Put("C:\\f\\no extension", "");
  machine.Put("C:\\f\\.hidden", "");
  machine.Put("C:\\f\\sub\\b.txt", "");
  DeleteFilesIn(machine, "C:\\f\\");
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\f")), ElementsAre(".hidden", "sub"));
  EXPECT_TRUE(machine.Has("C:\\f\\sub\\b.txt"));
}

TEST(FileDeletingTest, DeletingSparesAReadOnlyFileDeletesTheOthersAndRaises75) {
  const TestMachine machine;
  for (const char* name : {"a", "b", "c"}) machine.Put(std::string("C:\\f\\") + name, "");
  chmod(machine.Native("C:\\f\\b").c_str(), 0444);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(machine, "C:\\f"); }), 75);
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\f")), ElementsAre("b"));
}

TEST(FileDeletingTest, DeletingRaises53WhereNoFileMatchesAnd76WithoutTheFolder) {
  const TestMachine machine;
  machine.MakeFolders("C:\\f\\sub");
  machine.Put("C:\\f\\.hidden", "");
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(machine, "C:\\f"); }), 53);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(machine, "C:\\g"); }), 76);
}

TEST(FileDeletingTest, AFolderIsRemovedAndEmptiedByItsExactNameAlone) {
  const TestMachine machine;
  machine.MakeFolders("C:\\logs\\alpha");
  machine.Put("C:\\logs\\beta\\a.txt", "kept");
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, "C:\\logs\\Alpha"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(machine, "C:\\logs\\Beta\\"); }), 76);
  EXPECT_TRUE(machine.Has("C:\\logs\\alpha"));
  EXPECT_EQ(machine.Get("C:\\logs\\beta\\a.txt"), "kept");
  DeleteFilesIn(machine, "C:\\LOGS\\beta\\");
  RemoveFolder(machine, "C:\\LOGS\\beta");
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\logs")), ElementsAre("alpha"));
}

TEST(FileDeletingTest, NothingBehindALinkInTheFoldersPlaceIsTouched) {
  const TestMachine machine;
  machine.Put("C:\\elsewhere\\a.txt", "kept");
  machine.MakeFolders("C:\\nothing in it");
  fs::create_directory_symlink("elsewhere", machine.Native("C:\\log"));
  fs::create_directory_symlink("nothing in it", machine.Native("C:\\empty"));
  fs::create_directory_symlink("nowhere", machine.Native("C:\\broken"));
  for (const char* link : {"C:\\log", "C:\\empty\\", "C:\\broken"}) {
    EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(machine, link); }), 75) << link;
    EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, link); }), 75) << link;
  }
  EXPECT_EQ(machine.Get("C:\\elsewhere\\a.txt"), "kept");
  EXPECT_TRUE(machine.Has("C:\\nothing in it"));
  for (const char* link : {"C:\\log", "C:\\empty", "C:\\broken"})
    EXPECT_TRUE(fs::is_symlink(machine.Native(link))) << link;
}

TEST(FileDeletingTest, AFolderBelowADriveThatIsALinkIsEmptiedAndRemoved) {
  const TestMachine machine;
  fs::create_directories(machine.home() + "/disk/log");
  fs::create_directory_symlink("../disk", machine.home() + "/drives/d");
  WriteFile(machine, "D:\\log\\a.txt", "a");
  DeleteFilesIn(machine, "D:\\log");
  RemoveFolder(machine, "D:\\log");
  EXPECT_TRUE(fs::is_empty(machine.home() + "/disk"));
}

TEST(FileDeletingTest, ALinkInAFolderIsDeletedAloneWhateverItLeadsTo) {
  const TestMachine machine;
  machine.Put("C:\\elsewhere\\a.txt", "kept");
  chmod(machine.Native("C:\\elsewhere\\a.txt").c_str(), 0444);
  machine.MakeFolders("C:\\log");
  fs::create_symlink("../elsewhere", machine.Native("C:\\log\\to a folder"));
  fs::create_symlink("../elsewhere/a.txt", machine.Native("C:\\log\\to a read-only file"));
  fs::create_symlink("nowhere", machine.Native("C:\\log\\to nowhere"));
  DeleteFilesIn(machine, "C:\\log");
  RemoveFolder(machine, "C:\\log");
  EXPECT_FALSE(machine.Has("C:\\log"));
  EXPECT_EQ(machine.Get("C:\\elsewhere\\a.txt"), "kept");
}

TEST(FileDeletingTest, WhatBearsTheNameOfATemporaryFileButIsNoneIsAnEntryAndKeepsItsFolder) {
  const TestMachine machine;
  const std::string name(kTemporaryName);
  machine.MakeFolders("C:\\logs\\" + name);
  machine.Put("C:\\logs\\" + name + "old", "a user's own");
  fs::create_symlink("nowhere", machine.Native("C:\\logs\\" + name + "1"));
  machine.Put("C:\\logs\\" + name + "12-3", "half a fi");
  for (const char* end : {"12-x", "x-12", "12-", "-12", "-"})
    machine.Put("C:\\logs\\" + name + end, "a user's own");
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\logs")),
              UnorderedElementsAre(name, name + "1", name + "old", name + "12-x", name + "x-12",
                                   name + "12-", name + "-12", name + "-"));
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, "C:\\logs"); }), 75);
}

}  // namespace
}  // namespace logbook::test
