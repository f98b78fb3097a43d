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

TEST(DiskTraitsTest, ANetworkDriveHasAClockOfItsOwnAndTheTimesOfChanges) {
  const TestMachine machine;
  const OtherDisk disk(OtherDisk::kNfs);
  EXPECT_FALSE(TraitsOfDisk(machine.home()).has_our_clock);
  EXPECT_TRUE(TraitsOfDisk(machine.home()).has_change_times);
}

TEST(DiskTraitsTest, OfAMemoryCardOfProgramsAndOfWhatIsNotKnownNothingHolds) {
  const TestMachine machine;
  for (const long number : {OtherDisk::kFat, OtherDisk::kExFat, OtherDisk::kFuse, 0x12345678L}) {
    const OtherDisk disk(number);
    EXPECT_FALSE(TraitsOfDisk(machine.home()).has_our_clock) << number;
    EXPECT_FALSE(TraitsOfDisk(machine.home()).has_change_times) << number;
  }
  EXPECT_FALSE(TraitsOfDisk(machine.home() + "/none").has_change_times);
}

}  // namespace
}  // namespace logbook::test
