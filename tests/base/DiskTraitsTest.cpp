// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/DiskTraits.h"

#include <gtest/gtest.h>

#include "support/OtherDisk.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

TEST(DiskTraitsTest, ADiskOfThisMachineHasItsClockAndTheTimesOfChanges) {
  const TestMachine machine;
  const OtherDisk disk(OtherDisk::kExt);
  EXPECT_TRUE(TraitsOfDisk(machine.home()).has_our_clock);
  EXPECT_TRUE(TraitsOfDisk(machine.home()).has_change_times);
}

TEST(DiskTraitsTest, ANetworkDriveAndWhatIsNotKnownHaveAClockOfTheirOwn) {
  const TestMachine machine;
  for (const long number : {OtherDisk::kNfs, 0x12345678L}) {
    const OtherDisk disk(number);
    EXPECT_FALSE(TraitsOfDisk(machine.home()).has_our_clock);
    EXPECT_TRUE(TraitsOfDisk(machine.home()).has_change_times);
  }
  EXPECT_FALSE(TraitsOfDisk(machine.home() + "/none").has_our_clock);
}

TEST(DiskTraitsTest, AMemoryCardKeepsNoTimesOfChanges) {
  const TestMachine machine;
  for (const long number : {OtherDisk::kFat, OtherDisk::kExFat}) {
    const OtherDisk disk(number);
    EXPECT_FALSE(TraitsOfDisk(machine.home()).has_change_times);
    EXPECT_TRUE(TraitsOfDisk(machine.home()).has_our_clock);
  }
}

}  // namespace
}  // namespace logbook::test
