// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The stamps of logs on a network drive and on a memory card.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <time.h>

#include <string>
#include <utility>

#include "AllCatalogues.h"
#include "base/Files.h"
#include "insight/LogIndex.h"
#include "insight/LogRootWalk.h"
#include "insight/Query.h"
#include "snapshot/DiskClocks.h"
#include "support/OtherDisk.h"
#include "support/TestMachine.h"

namespace {

// The time at which the clock that only ever runs stands still; 0 if it runs.
timespec standing = {};

}  // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  using Routine = int(clockid_t, timespec*);
  static const auto real = reinterpret_cast<Routine*>(dlsym(RTLD_NEXT, "clock_gettime"));
  if (clock != CLOCK_MONOTONIC || standing.tv_sec == 0) return real(clock, time);
  *time = standing;
  return 0;
}

namespace logbook::insight {
namespace {

using test::OtherDisk;

class OnOtherDisks : public testing::Test {
 protected:
  // A log that was changed last, and long enough ago by the clock of this machine. What the disk
  // shows of its own clock does not grow older, however slow the program is.
  OnOtherDisks() {
    clock_gettime(CLOCK_MONOTONIC, &standing);
    machine.Put("C:\\logs\\a\\auser.txt", "1");
    const FileStamp file = StampOf(machine, "C:\\logs\\a\\auser.txt");
    while (DiskClocks::Moment::Now().system_ns < file.changed_ns + 200'000'000) {
    }
  }
  ~OnOtherDisks() override { standing = {}; }

  bool IsSettled(LogRootWalk& walk) {
    const bool alone = walk.Stamp("a")->Settled;
    EXPECT_EQ(walk.LoadStamped("a")->Stamp.Settled, alone);
    return alone;
  }

  test::TestMachine machine;
};

TEST_F(OnOtherDisks, ALogOnADiskOfThisMachineSettlesByItself) {
  const OtherDisk disk(OtherDisk::kExt);
  LogRootWalk walk(machine.Native("C:\\logs"));
  EXPECT_TRUE(IsSettled(walk));
}

TEST_F(OnOtherDisks, OnANetworkDriveTheLogThatWasChangedLastIsReadEachTime) {
  const OtherDisk disk(OtherDisk::kNfs);
  LogRootWalk walk(machine.Native("C:\\logs"));
  EXPECT_FALSE(IsSettled(walk));
  machine.Put("C:\\logs\\b\\auser.txt", "1");
  EXPECT_FALSE(walk.Stamp("b")->Settled);
  EXPECT_TRUE(IsSettled(walk)) << "the disk has shown a later time";
}

// Waits until what is changed now has another time than a file, by more than the grain of stamps.
void WaitBehind(const test::TestMachine& machine, const char* path) {
  const FileStamp stamp = StampOf(machine, path);
  while (DiskClocks::Moment::Now().system_ns < stamp.changed_ns + 200'000'000) {
  }
}

TEST_F(OnOtherDisks, OnANetworkDriveTheIndexReadsOnlyTheLogAgainThatWasChangedLast) {
  const OtherDisk disk(OtherDisk::kNfs);
  machine.Put("C:\\logs\\b\\auser.txt", "1");
  WaitBehind(machine, "C:\\logs\\b\\auser.txt");
  machine.Put("C:\\logs\\c\\auser.txt", "1");
  const test::TestMachine cache;
  const auto logs_read = [&] {
    std::size_t read = 0;
    IndexSettings settings;
    settings.Folder = cache.home() + "/cache";
    settings.Progress = [&read](const UpdateProgress& progress) {
      if (progress.Where == UpdateProgress::Step::kReading) read = progress.Done;
    };
    LogIndex index(*machine.machine().code_page, test::AllCatalogues(), machine.Native("C:\\logs"),
                   std::move(settings));
    FindRequest request;
    request.What = ParseQuery(test::AllCatalogues(), "");
    EXPECT_EQ(index.Find(request).Logs.size(), 3u);
    return read;
  };
  EXPECT_EQ(logs_read(), 3u);
  EXPECT_EQ(logs_read(), 1u);
  EXPECT_EQ(logs_read(), 1u);
}

TEST_F(OnOtherDisks, OnAMemoryCardOrADiskMadeByAProgramEachLogIsReadEachTime) {
  for (const long number : {OtherDisk::kFat, OtherDisk::kFuse}) {
    const OtherDisk disk(number);
    LogRootWalk walk(machine.Native("C:\\logs"));
    EXPECT_FALSE(IsSettled(walk)) << number;
  }
}

}  // namespace
}  // namespace logbook::insight
