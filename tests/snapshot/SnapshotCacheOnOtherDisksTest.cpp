// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is kept of files on a network drive whose clock is set back, and on a memory card.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <string>

#include "snapshot/SnapshotCache.h"
#include "support/DiskCalls.h"
#include "support/OtherDisk.h"
#include "support/TestMachine.h"

namespace {

// The time that the server gives to a change, in seconds; 0 for that of the disk.
std::int64_t server_time = 0;

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
  return result;
}

int fstat(int file, struct stat* status) noexcept {
  const int result = Real<int(int, struct stat*)>("fstat")(file, status);
  if (server_time != 0 && S_ISREG(status->st_mode)) {
    status->st_mtim = {.tv_sec = server_time, .tv_nsec = 1};
    status->st_ctim = status->st_mtim;
  }
  return result;
}

}  // extern "C"

namespace logbook {
namespace {

constexpr const char* kIni = "C:\\log\\logfile.ini";

class OnOtherDisks : public testing::Test {
 protected:
  OnOtherDisks() { Put("1"); }
  ~OnOtherDisks() override { server_time = 0; }

  void Put(const std::string& lens) { machine.Put(kIni, "[OPTION]\r\nLENS=" + lens + "\r\n"); }
  static double LensBy(SnapshotCache& cache) {
    const SnapshotCache::Pass pass(cache);
    return cache.Log("C:\\", "log").Options().LENS;
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
