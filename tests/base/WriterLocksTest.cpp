// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <iterator>
#include <thread>

#include "base/Files.h"
#include "base/NativeFile.h"
#include "base/Profile.h"
#include "base/posix/FolderLock.h"
#include "base/posix/OpenFolder.h"
#include "support/AnotherProcess.h"
#include "support/DiskCalls.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

// Somebody else's lock on a folder or file, as strong as that of another process.
class ForeignLock {
 public:
  explicit ForeignLock(const std::string& native) : file_(open(native.c_str(), O_RDONLY)) {
    EXPECT_EQ(flock(file_, LOCK_EX | LOCK_NB), 0) << native;
  }
  ~ForeignLock() { close(file_); }
  ForeignLock(const ForeignLock&) = delete;
  ForeignLock& operator=(const ForeignLock&) = delete;

 private:
  int file_;
};

// In processes of their own, since a wait in vain is remembered to the end of the process.

TEST(WriterLocksTest, AForeignLockHoldsTheProgramUpOnceAndTheWritingIsDone) {
  using std::chrono::seconds;
  static_assert(posix::kLongestLockWait < seconds(2));
  const TestMachine machine;
  machine.Put("C:\\a.ini", "[s]\r\nother=kept\r\n");
  machine.MakeFolders("C:\\log");
  InAnotherProcess([&machine] {
    const ForeignLock root(machine.Native("C:\\"));
    const ForeignLock log(machine.Native("C:\\log"));
    const DiskCalls calls;
    // Not in the thread that the process began with, which the system would interrupt first.
    std::thread([&machine] {
      EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "1", "C:\\a.ini"));
      std::ifstream timers("/proc/self/timers");
      EXPECT_EQ(std::string(std::istreambuf_iterator<char>(timers), {}), "");
    }).join();
    EXPECT_GT(DiskCalls::Count("wait "), 0);
    const int waits = DiskCalls::Count("wait ");
    EXPECT_TRUE(WritePrivateProfileString(machine, "s", "k", "2", "C:\\a.ini"));
    WriteFile(machine, "C:\\log\\a.txt", "whole");
    EXPECT_EQ(DiskCalls::Count("wait "), waits);
    EXPECT_FALSE(
        posix::LockFolder(posix::Descriptor(open(machine.Native("C:\\log").c_str(), O_RDONLY))));
  });
  EXPECT_EQ(machine.Get("C:\\a.ini"), "[s]\r\nother=kept\r\nk=2\r\n");
  EXPECT_EQ(machine.Get("C:\\log\\a.txt"), "whole");
}

// The clock of this test stands still, so that the last nanosecond can be told from the one before.
TEST(WriterLocksTest, AWaitGoesOnBelowItsLimitAndEndsAtIt) {
  const TestMachine machine;
  const std::chrono::nanoseconds limit = posix::kLongestLockWait;
  for (const int more : {-1, 0, 1}) {
    InAnotherProcess([&] {
      const std::string root = machine.Native("C:\\");
      const ForeignLock foreign(root);
      const posix::Descriptor folder(open(root.c_str(), O_RDONLY));
      const DiskCalls calls;
      DiskCalls::InterruptTheNextWaitAfter(limit + std::chrono::nanoseconds(more));
      EXPECT_EQ(posix::LockFolder(folder), more < 0) << more;
      EXPECT_EQ(DiskCalls::Count("wait "), more < 0 ? 2 : 1) << more;
    });
  }
}

TEST(WriterLocksTest, ALockThatIsFreeIsTakenWithoutAWait) {
  const TestMachine machine;
  const DiskCalls calls;
  WriteFile(machine, "C:\\a.txt", "whole");
  const std::string root = machine.Native("C:\\");
  const posix::Descriptor ours(open(root.c_str(), O_RDONLY));
  EXPECT_TRUE(posix::LockFolder(ours));
  const posix::Descriptor other(open(root.c_str(), O_RDONLY));
  EXPECT_NE(flock(other.Number(), LOCK_EX | LOCK_NB), 0) << "it is ours";
  EXPECT_EQ(DiskCalls::Count("wait "), 0);
}

TEST(WriterLocksTest, AFolderIsOpenedSoThatItCanBeLockedWhateverFailedBefore) {
  const TestMachine machine;
  errno = EACCES;
  const posix::Descriptor folder = posix::OpenFolder(machine.Native("C:\\"));
  EXPECT_TRUE(posix::LockFolder(folder));
}

TEST(WriterLocksTest, AFolderUnderAForeignLockIsRemovedWithWhatAKilledWriterLeft) {
  const TestMachine machine;
  machine.Put("C:\\log\\" + std::string(kTemporaryName), "half a fi");
  const ForeignLock log(machine.Native("C:\\log"));
  const DiskCalls calls;
  RemoveFolder(machine, "C:\\log");
  EXPECT_FALSE(machine.Has("C:\\log"));
  EXPECT_EQ(DiskCalls::Count("wait "), 0);
}

TEST(WriterLocksTest, TheTemporaryFileOfAWriterAtWorkStays) {
  const TestMachine machine;
  const std::string name = "C:\\" + std::string(kTemporaryName) + "4711";
  machine.Put(name, "half a fi");
  {
    const ForeignLock writer(machine.Native(name));
    WriteFile(machine, "C:\\a.txt", "one");
    EXPECT_EQ(machine.Get(name), "half a fi");
  }
  WriteFile(machine, "C:\\a.txt", "two");
  EXPECT_FALSE(machine.Has(name));
}

TEST(WriterLocksTest, AWriterLocksItsTemporaryFile) {
  const TestMachine machine;
  const DiskCalls calls;
  WriteFile(machine, "C:\\a.txt", "one");
  EXPECT_EQ(DiskCalls::Count("try " + machine.Native("C:\\") + std::string(kTemporaryName)), 1);
}

}  // namespace
}  // namespace logbook::test
