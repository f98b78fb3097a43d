// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Settling.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kSecond = 1'000 * kMillisecond;
constexpr DiskTraits kOurs = {.has_our_clock = true, .has_change_times = true};
constexpr DiskTraits kServers = {.has_our_clock = false, .has_change_times = true};
constexpr DiskTraits kCards = {};

// Of a file that was changed so long ago by the clock of this machine.
FileStamp Changed(std::int64_t nanoseconds, std::uint64_t inode = 2) {
  const std::int64_t time = DiskClocks::Moment::Now().system_ns - nanoseconds;
  return {.device = 1, .inode = inode, .size = 3, .modified_ns = time, .changed_ns = time};
}

TEST(SettlingTest, OnADiskOfThisMachineAFileSettlesByItsClock) {
  Settling settling(Changed(3600 * kSecond, 1), kOurs);
  const FileStamp file = Changed(0);
  DiskClocks::Moment moment = DiskClocks::Moment::Now();
  EXPECT_FALSE(settling.IsSettled(file, moment));
  moment.system_ns += 3 * kSecond;
  moment.steady_ns += 3 * kSecond;
  EXPECT_TRUE(settling.IsSettled(file, moment));
}

TEST(SettlingTest, OnANetworkDriveItSettlesOnceTheDiskHasShownALaterTime) {
  // By the server's clock, an hour behind, the file was changed a moment ago.
  const std::int64_t behind = 3600 * kSecond;
  Settling settling(Changed(behind + 60 * kSecond, 1), kServers);
  const FileStamp file = Changed(behind);
  EXPECT_FALSE(settling.IsSettled(file, DiskClocks::Moment::Now()));
  DiskClocks::Moment later = DiskClocks::Moment::Now();
  EXPECT_FALSE(settling.IsSettled(file, later)) << "what the file itself shows is no later time";
  settling.IsSettled(Changed(behind - 5 * kSecond, 3), later);
  EXPECT_TRUE(settling.IsSettled(file, DiskClocks::Moment::Now()));
}

TEST(SettlingTest, AFileBehindALinkIsJudgedByItsOwnDisk) {
  Settling settling(Changed(3600 * kSecond, 1), kOurs);
  const auto settled_on = [&](std::uint64_t device) {
    FileStamp file = Changed(1800 * kSecond);
    file.device = device;
    return settling.IsSettled(file, DiskClocks::Moment::Now());
  };
  const auto enter = [&](std::uint64_t device, const DiskTraits& traits) {
    FileStamp folder = Changed(0, 7);
    folder.device = device;
    int asked = 0;
    settling.Enter(folder, [&] {
      ++asked;
      return traits;
    });
    return asked;
  };
  EXPECT_TRUE(settled_on(1));
  EXPECT_FALSE(settled_on(9)) << "nothing is known of that disk";
  EXPECT_EQ(enter(1, kCards), 0) << "the root's is known";
  EXPECT_EQ(enter(9, kOurs), 1);
  EXPECT_EQ(enter(9, kCards), 0);
  EXPECT_EQ(enter(10, kCards), 1);
  EXPECT_TRUE(settled_on(1));
  EXPECT_TRUE(settled_on(9));
  EXPECT_FALSE(settled_on(10));
}

TEST(SettlingTest, WithoutTimesOfChangesNothingSettlesButANameWithoutAFile) {
  Settling settling(Changed(3600 * kSecond, 1), kCards);
  EXPECT_FALSE(settling.IsSettled(Changed(1800 * kSecond), DiskClocks::Moment::Now()));
  EXPECT_TRUE(settling.IsSettled(FileStamp(), DiskClocks::Moment::Now()));
}

}  // namespace
}  // namespace logbook::insight
