// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What somebody else does to a folder between two calls of a writer.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/FileLock.h"
#include "base/Files.h"
#include "base/NativeDisk.h"
#include "base/NativeFile.h"
#include "base/posix/Descriptor.h"
#include "base/posix/LockedFile.h"
#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using posix::Descriptor;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

ino_t NumberOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_ino;
}

class OtherWritersTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return disk.Native("C:\\log\\" + name); }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Path("")))
      names.push_back(entry.path().filename().string());
    return names;
  }
  // Lets another writer act when this one has the folder's lock and asks for that of a file.
  static void WhenAFileIsLocked(const std::function<void()>& action) {
    DiskCalls::BeforeTheNext("try", [action] { DiskCalls::BeforeTheNext("try", action); });
  }
  // Opens a file and locks it.
  Descriptor Lock(const std::string& name) const {
    Descriptor file(open(Path(name).c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_EQ(flock(file.Number(), LOCK_EX | LOCK_NB), 0) << name;
    return file;
  }

  const std::string temporary = std::string(kTemporaryName);
  TestMachine disk;
  DiskCalls calls;
};

TEST_F(OtherWritersTest, AFileThatHasGotALeftFilesNameMeanwhileStays) {
  const std::string name = temporary + "4711";
  disk.Put("C:\\log\\" + name, "half a fi");
  WhenAFileIsLocked([&] {
    disk.Put("C:\\log\\new", "at work");
    fs::rename(Path("new"), Path(name));
  });
  WriteFile(disk, "C:\\log\\a.txt", "whole");
  EXPECT_EQ(disk.Get("C:\\log\\" + name), "at work");
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "whole");
}

TEST_F(OtherWritersTest, ATemporaryFileThatWasTakenForALeftOneIsMadeAnew) {
  disk.MakeFolders("C:\\log");
  WhenAFileIsLocked([&] { fs::remove(Path(temporary)); });
  WriteFile(disk, "C:\\log\\a.txt", "whole");
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "whole");
  EXPECT_THAT(Names(), ElementsAre("a.txt"));
}

TEST_F(OtherWritersTest, ATemporaryFileThatAnotherHasLockedIsLeftToHimAndGone) {
  disk.MakeFolders("C:\\log");
  Descriptor other;
  ino_t locked = 0;
  WhenAFileIsLocked([&] {
    other = Lock(temporary);
    locked = NumberOf(Path(temporary));
  });
  WriteFile(disk, "C:\\log\\a.txt", "whole");
  EXPECT_NE(NumberOf(Path("a.txt")), locked);
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "whole");
  EXPECT_THAT(Names(), ElementsAre("a.txt"));
}

TEST_F(OtherWritersTest, AFolderInWhichAWriterIsAtWorkIsNotRemoved) {
  const std::string name = temporary + "4711";
  disk.Put("C:\\log\\" + name, "half a fi");
  const Descriptor writer = Lock(name);
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(disk, "C:\\log"); }), 75);
  EXPECT_THAT(Names(), ElementsAre(name));
}

TEST_F(OtherWritersTest, OfAHundredTemporaryNamesOneHasToBeFree) {
  const std::string numbered = temporary + std::to_string(getpid());
  for (const std::string& name : {temporary, numbered}) disk.MakeFolders("C:\\log\\" + name);
  for (int i = 1; i < 100; ++i) disk.MakeFolders("C:\\log\\" + numbered + "-" + std::to_string(i));
  EXPECT_EQ(NumberRaisedBy([&] { WriteFile(disk, "C:\\log\\a.txt", "whole"); }), 57);
  EXPECT_EQ(Names().size(), 101u);
  for (const char* free : {"-1", "-99"}) {
    fs::remove(Path(numbered + free));
    WriteFile(disk, "C:\\log\\a.txt", free);
    EXPECT_EQ(disk.Get("C:\\log\\a.txt"), free);
    disk.MakeFolders("C:\\log\\" + numbered + free);
  }
}

TEST_F(OtherWritersTest, WhoWaitsForALockHoldsItWhenTheOtherLetsItGo) {
  const std::string path = disk.Native("C:\\lock");
  std::optional<FileLock> first;
  first.emplace(path, FileLock::Patience::kWait);
  DiskCalls::BeforeTheNext("wait", [&first] { first.reset(); });
  EXPECT_TRUE(FileLock(path, FileLock::Patience::kWait).IsHeld());
}

TEST_F(OtherWritersTest, AFileThatWasRemovedBeforeItsLockIsNotMade) {
  disk.MakeFolders("C:\\log");
  DiskCalls::BeforeTheNext("try", [&] { fs::remove(Path("a.part")); });
  errno = 0;
  EXPECT_FALSE(posix::MakeLockedFile(Path("a.part"), 0600).IsOpen());
  EXPECT_EQ(errno, EEXIST);
  EXPECT_THAT(Names(), testing::IsEmpty());
}

TEST_F(OtherWritersTest, AFileThatAnotherHasLockedBeforeIsNotMade) {
  disk.MakeFolders("C:\\log");
  Descriptor other;
  DiskCalls::BeforeTheNext("try", [&] { other = Lock("a.part"); });
  EXPECT_FALSE(posix::MakeLockedFile(Path("a.part"), 0600).IsOpen());
  EXPECT_EQ(errno, EEXIST);
}

TEST_F(OtherWritersTest, WhatGetsALeftFilesNameBeforeItsLockStays) {
  disk.Put("C:\\log\\a.part", "PK");
  disk.Put("C:\\log\\b", "PK of somebody");
  DiskCalls::BeforeTheNext("try", [&] { fs::rename(Path("b"), Path("a.part")); });
  posix::RemoveLeftFiles(
      Path(""), [](std::string_view name) { return name == "a.part"; }, "PK");
  EXPECT_EQ(disk.Get("C:\\log\\a.part"), "PK of somebody");
}

TEST_F(OtherWritersTest, ALinkThatTakesAFoldersPlaceIsNotFollowed) {
  disk.Put("C:\\log\\tree\\a.txt", "a");
  disk.Put("C:\\log\\elsewhere\\b.txt", "kept");
  DiskCalls::BeforeTheNext("openat", [&] {
    fs::rename(Path("tree"), Path("moved"));
    fs::create_directory_symlink("elsewhere", Path("tree"));
  });
  EXPECT_TRUE(native::RemoveTree(Path("tree")));
  EXPECT_EQ(disk.Get("C:\\log\\elsewhere\\b.txt"), "kept");
}

TEST_F(OtherWritersTest, TheFilesOfAFolderGoInTheOrderOfTheirNames) {
  const std::vector<std::string> names = {"B", "a", "c", "d", "e"};
  for (const char* name : {"c", "a", "e", "B", "d"}) disk.Put(std::string("C:\\log\\") + name, "");
  DeleteFilesIn(disk, "C:\\log");
  std::vector<std::string> deleted;
  for (const std::string& call : DiskCalls::Calls())
    if (call.starts_with("delete ")) deleted.push_back(call.substr(7));
  EXPECT_EQ(deleted, names);
}

}  // namespace
}  // namespace logbook::test
