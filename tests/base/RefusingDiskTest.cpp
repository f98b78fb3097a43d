// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Disks that know no locks, or refuse what others grant.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "base/FileLock.h"
#include "base/Files.h"
#include "base/FilesBelow.h"
#include "base/NativeDisk.h"
#include "base/NativeFile.h"
#include "base/PrivateFolder.h"
#include "base/posix/FolderLock.h"
#include "base/posix/LockedFile.h"
#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

class RefusingDiskTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return disk.Native("C:\\" + name); }
  static void KnowNoLocks() {
    for (const char* kind : {"try", "wait"}) DiskCalls::Refuse(kind, ENOLCK);
  }

  const std::string left = "C:\\log\\" + std::string(kTemporaryName) + "4711";
  TestMachine disk;
  DiskCalls calls;
};

TEST_F(RefusingDiskTest, WithoutLocksAFileIsWrittenAndNothingGoesThatMayBeAtWork) {
  disk.Put(left, "half a fi");
  KnowNoLocks();
  WriteFile(disk, "C:\\log\\a.txt", "whole");
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "whole");
  EXPECT_EQ(disk.Get(left), "half a fi");
}

TEST_F(RefusingDiskTest, WithoutLocksAFolderIsRemovedWithWhatKilledWritersLeft) {
  disk.Put(left, "half a fi");
  KnowNoLocks();
  RemoveFolder(disk, "C:\\log");
  EXPECT_FALSE(disk.Has("C:\\log"));
}

TEST_F(RefusingDiskTest, WithoutLocksAFileOfItsWritersLifeIsMadeAndNoneIsTakenAway) {
  disk.Put("C:\\old.part", "PK");
  KnowNoLocks();
  EXPECT_TRUE(posix::MakeLockedFile(Path("new.part"), 0600).IsOpen());
  posix::RemoveLeftFiles(
      Path(""), [](std::string_view) { return true; }, "PK");
  EXPECT_TRUE(disk.Has("C:\\old.part"));
}

TEST_F(RefusingDiskTest, WithoutLocksALockIsAnError) {
  KnowNoLocks();
  for (const auto patience : {FileLock::Patience::kTry, FileLock::Patience::kWait})
    EXPECT_EQ(NumberRaisedBy([&] { FileLock(Path("lock"), patience); }), 57);
}

TEST_F(RefusingDiskTest, AWaitForALockThatTheSystemRefusesGivesNone) {
  const posix::Descriptor foreign(open(Path("").c_str(), O_RDONLY));
  ASSERT_EQ(flock(foreign.Number(), LOCK_EX | LOCK_NB), 0);
  DiskCalls::Refuse("wait", ENOLCK);
  EXPECT_FALSE(posix::LockFolder(posix::Descriptor(open(Path("").c_str(), O_RDONLY))));
}

TEST_F(RefusingDiskTest, AListThatBreaksOffIsError57) {
  disk.Put("C:\\log\\a.txt", "a");
  DiskCalls::Refuse("next", EIO);
  EXPECT_EQ(NumberRaisedBy([&] { ScanFolder(disk, "C:\\log"); }), 57);
  EXPECT_EQ(NumberRaisedBy([&] { FirstFoldersIn(disk, "C:\\", 5); }), 57);
  EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(disk, "C:\\log"); }), 57);
  EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(disk, "C:\\log"); }), 57);
  std::vector<native::Entry> entries;
  EXPECT_EQ(native::EntriesIn(Path("log"), entries), std::errc::io_error);
  EXPECT_TRUE(disk.Has("C:\\log\\a.txt"));
}

TEST_F(RefusingDiskTest, AListThatBreaksOffSaysNothingOfWhatIsMissing) {
  disk.MakeFolders("C:\\log");
  FilesBelow files(disk, "C:\\");
  FileStamp stamp;
  std::string_view bytes;
  EXPECT_EQ(files.Read("log", "none.txt", stamp, bytes), FilesBelow::Found::kMissing);
  FilesBelow others(disk, "C:\\");
  DiskCalls::Refuse("next", EIO);
  EXPECT_EQ(others.Read("log", "none.txt", stamp, bytes), FilesBelow::Found::kUnclear);
}

TEST_F(RefusingDiskTest, AFileThatHasMoreBytesThanItSaysIsUnclearBeyondTheLimit) {
  if (!fs::exists("/proc/kallsyms")) GTEST_SKIP() << "this machine has no /proc/kallsyms";
  FilesBelow files(disk, "\\");
  FileStamp stamp;
  std::string_view bytes;
  EXPECT_EQ(files.Look("proc", "kallsyms", stamp), FilesBelow::Found::kFile);
  EXPECT_EQ(files.Read("proc", "kallsyms", stamp, bytes), FilesBelow::Found::kUnclear);
}

TEST_F(RefusingDiskTest, ADriveIsKnownAlsoWhereTheDrivesCannotBeListed) {
  fs::create_directories(disk.home() + "/disk");
  fs::create_directory_symlink("../disk", disk.home() + "/drives/d");
  const std::string folder = fs::canonical(disk.home() + "/disk").string();
  for (const char* kind : {"next", "list"}) {
    DiskCalls::Refuse(kind, EIO);
    EXPECT_EQ(DrivePathText(disk, folder + "/a"), "D:\\a") << kind;
  }
}

TEST_F(RefusingDiskTest, AFolderThatCannotBeListedIsWrittenTo) {
  disk.MakeFolders("C:\\log");
  DiskCalls::Refuse("list", EMFILE);
  WriteFile(disk, "C:\\log\\a.txt", "whole");
  WriteFile(disk, "C:\\log\\a.txt", "anew");
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "anew");
}

TEST_F(RefusingDiskTest, AFolderThatCannotBeListedStaysAndNothingOfItStaysOpen) {
  disk.Put("C:\\tree\\a.txt", "a");
  DiskCalls::Refuse("list", EMFILE);
  const int free = dup(0);
  close(free);
  EXPECT_EQ(native::RemoveTree(Path("tree")), std::errc::too_many_files_open);
  EXPECT_TRUE(disk.Has("C:\\tree\\a.txt"));
  const int still_free = dup(0);
  close(still_free);
  EXPECT_EQ(still_free, free);
}

TEST_F(RefusingDiskTest, AFolderThatIsItsOwnersAloneAlreadyIsTakenAsItIs) {
  MakePrivateFolder(disk, "C:\\area");
  disk.Put("C:\\open\\a.txt", "");
  DiskCalls::Refuse("fchmod", EROFS);
  EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(disk, "C:\\area"); }), std::nullopt);
  EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(disk, "C:\\open"); }), 70);
}

TEST_F(RefusingDiskTest, WhatCannotBeReadIsNotTakenForALeftFile) {
  disk.Put("C:\\old.part", "PK");
  DiskCalls::Refuse("pread", EIO);
  posix::RemoveLeftFiles(
      Path(""), [](std::string_view) { return true; }, "PK");
  EXPECT_TRUE(disk.Has("C:\\old.part"));
}

TEST_F(RefusingDiskTest, AWriteWhoseLastStepIsRefusedLeavesTheOldFileAndNothingElse) {
  disk.Put("C:\\log\\a.txt", "old");
  DiskCalls::Refuse("rename", EIO);
  EXPECT_EQ(NumberRaisedBy([&] { WriteFile(disk, "C:\\log\\a.txt", "new"); }), 57);
  EXPECT_EQ(NumberRaisedBy([&] { WriteMadeFile(disk, "C:\\log\\a.txt", "new"); }), 57);
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(Path("log")), fs::directory_iterator()), 1);
}

}  // namespace
}  // namespace logbook::test
