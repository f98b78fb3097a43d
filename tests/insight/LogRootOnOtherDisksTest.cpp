// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The stamps of logs on a network drive and on a memory card.

#include <gtest/gtest.h>

#include <string>

#include "base/Files.h"
#include "insight/LogRootWalk.h"
#include "snapshot/DiskClocks.h"
#include "support/OtherDisk.h"
#include "support/TestMachine.h"

namespace logbook::insight {
namespace {

using test::OtherDisk;

class OnOtherDisks : public testing::Test {
 protected:
  // A log that was changed last, and long enough ago by the clock of this machine.
  OnOtherDisks() {
    machine.Put("C:\\logs\\a\\auser.txt", "1");
    const FileStamp file = StampOf(machine, "C:\\logs\\a\\auser.txt");
    while (DiskClocks::Moment::Now().system_ns < file.changed_ns + 200'000'000) {
    }
  }
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

TEST_F(OnOtherDisks, OnAMemoryCardEachLogIsReadEachTime) {
  const OtherDisk disk(OtherDisk::kFat);
  LogRootWalk walk(machine.Native("C:\\logs"));
  EXPECT_FALSE(IsSettled(walk));
}

}  // namespace
}  // namespace logbook::insight
