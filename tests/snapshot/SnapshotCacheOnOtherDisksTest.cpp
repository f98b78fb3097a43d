// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is kept of files on a network drive whose clock is set back, and on a memory card.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <chrono>
#include <cstdint>
#include <string>

#include "snapshot/SnapshotCache.h"
#include "support/DiskCalls.h"
#include "support/OtherDisk.h"
#include "support/TestMachine.h"

namespace {

// The times that the server gives to a change of a file and of a folder, in seconds, and the number
// that the system gives to the disk; 0 for what they are.
std::int64_t server_time = 0;
std::int64_t folder_time = 0;
unsigned device = 0;

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  const int result = Real<int(int, const char*, int, unsigned, struct statx*)>("statx")(
      folder, path, flags, mask, status);
  if (server_time != 0) {
    status->stx_mtime = {.tv_sec = server_time, .tv_nsec = 1};
    status->stx_ctime = status->stx_mtime;
  }
  if (device != 0) {
    status->stx_dev_major = 0;
    status->stx_dev_minor = device;
  }
  return result;
}

int fstat(int file, struct stat* status) noexcept {
  const int result = Real<int(int, struct stat*)>("fstat")(file, status);
  const std::int64_t time = S_ISREG(status->st_mode) ? server_time : folder_time;
  if (time != 0) {
    status->st_mtim = {.tv_sec = time, .tv_nsec = 1};
    status->st_ctim = status->st_mtim;
  }
  if (device != 0) status->st_dev = makedev(0, device);
  return result;
}

}  // extern "C"

namespace logbook {
namespace {

class OnOtherDisks : public testing::Test {
 protected:
  OnOtherDisks() { Put("1"); }
  ~OnOtherDisks() override {
    server_time = folder_time = 0;
    device = 0;
  }

  void Put(const std::string& lens, const std::string& log = "log") {
    machine.Put("C:\\" + log + "\\logfile.ini", "[OPTION]\r\nLENS=" + lens + "\r\n");
  }
  static double LensBy(SnapshotCache& cache, const std::string& log = "log") {
    const SnapshotCache::Pass pass(cache);
    return cache.Log("C:\\", log).Options().LENS;
  }
  // How often a file is read for that.
  static int ReadingsBy(SnapshotCache& cache, const std::string& log = "log") {
    const test::DiskCalls calls;
    LensBy(cache, log);
    return test::DiskCalls::Count("read ");
  }
  double Lens() { return LensBy(cache); }
  static std::int64_t Now() { return DiskClocks::Moment::Now().system_ns / 1'000'000'000; }

  test::TestMachine machine;
  SnapshotCache cache{machine};
};

TEST_F(OnOtherDisks, AfterTheServersClockWasSetBackAFileIsReadAgainThatChangesTwiceInAMoment) {
  const test::OtherDisk disk(test::OtherDisk::kNfs);
  server_time = Now() - 3600;  // long ago, and settled, as the root's own time shows
  ASSERT_EQ(Lens(), 1);
  {
    const test::DiskCalls calls;
    EXPECT_EQ(Lens(), 1);
    ASSERT_EQ(test::DiskCalls::Count("read "), 0) << "it is kept";
  }
  server_time -= 3600;  // set back, and from here on two changes in one moment
  Put("2");
  EXPECT_EQ(Lens(), 2);
  Put("3");
  EXPECT_EQ(Lens(), 3);
}

TEST_F(OnOtherDisks, TheTimeOfTheLogsFolderShowsThatTheServersClockWasSetBack) {
  const test::OtherDisk disk(test::OtherDisk::kNfs);
  folder_time = Now();
  server_time = Now() - 3600;
  ASSERT_EQ(Lens(), 1);
  ASSERT_EQ(ReadingsBy(cache), 0);
  folder_time = server_time = Now() - 7200;
  Put("1", "new");
  EXPECT_EQ(LensBy(cache, "new"), 1);
  Put("2", "new");
  EXPECT_EQ(LensBy(cache, "new"), 2) << "two changes in one moment";
}

TEST_F(OnOtherDisks, OnceAClockWasSetBackWhatIsOlderByItIsKeptAtOnce) {
  const test::OtherDisk disk(test::OtherDisk::kNfs);
  folder_time = Now();
  server_time = Now() - 9000;
  ASSERT_EQ(Lens(), 1);
  folder_time = Now() - 7200;
  Put("1", "old");
  EXPECT_EQ(LensBy(cache, "old"), 1);
  EXPECT_EQ(ReadingsBy(cache, "old"), 0);
}

TEST_F(OnOtherDisks, WhatKindADiskIsIsAskedAnewInEachPass) {
  server_time = Now() - 3600;
  {
    const test::OtherDisk card(test::OtherDisk::kFat);
    ASSERT_EQ(ReadingsBy(cache), 1);
    ASSERT_EQ(ReadingsBy(cache), 1);
  }
  const test::OtherDisk disk(test::OtherDisk::kExt);
  ASSERT_EQ(Lens(), 1);
  EXPECT_EQ(ReadingsBy(cache), 0);
}

TEST_F(OnOtherDisks, OfTwoDisksInAPassEachIsJudgedByItsOwnKind) {
  server_time = Now() - 3600;
  Put("1", "card\\log");
  for (int pass = 0; pass < 2; ++pass) {
    const SnapshotCache::Pass both(cache);
    const auto readings = [&](long kind, unsigned number, const char* root) {
      const test::OtherDisk disk(kind);
      device = number;
      const test::DiskCalls calls;
      EXPECT_EQ(cache.Log(root, "log").Options().LENS, 1);
      return test::DiskCalls::Count("read ");
    };
    EXPECT_EQ(readings(test::OtherDisk::kExt, 1, "C:\\"), pass == 0 ? 1 : 0);
    EXPECT_EQ(readings(test::OtherDisk::kFat, 2, "C:\\card\\"), 1);
  }
}

TEST_F(OnOtherDisks, OfAMemoryCardNothingIsKept) {
  server_time = Now() - 3600;
  for (const long number : {test::OtherDisk::kExt, test::OtherDisk::kFat}) {
    const test::OtherDisk disk(number);
    SnapshotCache fresh(machine);
    LensBy(fresh);
    const test::DiskCalls calls;
    EXPECT_EQ(LensBy(fresh), 1);
    EXPECT_EQ(test::DiskCalls::Count("read "), number == test::OtherDisk::kFat ? 1 : 0);
  }
  // The same size, and the time set to the old one.
  const test::OtherDisk disk(test::OtherDisk::kFat);
  EXPECT_EQ(Lens(), 1);
  Put("2");
  EXPECT_EQ(Lens(), 2);
}

}  // namespace
}  // namespace logbook
