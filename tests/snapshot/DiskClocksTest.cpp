// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/DiskClocks.h"

#include <gtest/gtest.h>

namespace logbook {
namespace {

constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kSecond = 1'000 * kMillisecond;
constexpr std::int64_t kStart = 1'795'000'000 * kSecond;  // of the machine's clock that can be set

// So long after the start by both clocks of the machine.
DiskClocks::Moment After(std::int64_t nanoseconds) {
  return {kStart + nanoseconds, 7 * kSecond + nanoseconds};
}

// Of a file that was changed so long after the start by the machine's clock, on a disk whose clock
// is so far behind.
FileStamp Changed(std::int64_t nanoseconds, std::int64_t behind = 0) {
  const std::int64_t time = kStart + nanoseconds - behind - 1;
  return {.device = 1, .inode = 2, .size = 3, .modified_ns = time, .changed_ns = time};
}

TEST(DiskClocksTest, AFileIsSettledOnceItsDiskHasShownALaterTime) {
  DiskClocks clocks;
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(kSecond)));
  clocks.Take(Changed(50 * kMillisecond), After(50 * kMillisecond));
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(60 * kMillisecond)));
  EXPECT_TRUE(clocks.IsSettled(Changed(0), After(120 * kMillisecond)));
}

TEST(DiskClocksTest, ADiskWhoseClockIsBehindSettlesAFileByThatClock) {
  constexpr std::int64_t kBehind = 5 * kSecond;
  DiskClocks clocks;
  clocks.Take(Changed(-60 * kSecond, kBehind), After(-30 * kSecond));
  // Written a moment ago: by this machine's clock the stamp looks five seconds old.
  const FileStamp stamp = Changed(0, kBehind);
  EXPECT_FALSE(clocks.IsSettled(stamp, After(kMillisecond)));
  clocks.Take(stamp, After(2 * kMillisecond));
  EXPECT_FALSE(clocks.IsSettled(stamp, After(99 * kMillisecond)));
  EXPECT_TRUE(clocks.IsSettled(stamp, After(110 * kMillisecond)));
}

TEST(DiskClocksTest, ADiskWhoseClockIsAheadSettlesAFileByTheMachines) {
  DiskClocks clocks;
  clocks.Take(Changed(0, -5 * kSecond), After(0));
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(50 * kMillisecond)));
  EXPECT_FALSE(clocks.IsSettled(Changed(0, -5 * kSecond), After(5 * kSecond)));
  clocks.Take(Changed(0, -5 * kSecond), After(6 * kSecond));
  EXPECT_TRUE(clocks.IsSettled(Changed(0, -5 * kSecond), After(6200 * kMillisecond)));
}

TEST(DiskClocksTest, EachDiskHasItsOwnClock) {
  DiskClocks clocks;
  FileStamp other = Changed(10 * kSecond);
  other.device = 9;
  clocks.Take(other, After(10 * kSecond));
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(11 * kSecond)));
  other.modified_ns = other.changed_ns = kStart - 1;
  EXPECT_TRUE(clocks.IsSettled(other, After(11 * kSecond)));
}

TEST(DiskClocksTest, AnEarlierTimeTakesNothingBack) {
  DiskClocks clocks;
  clocks.Take(Changed(kSecond), After(kSecond));
  clocks.Take(Changed(-3600 * kSecond), After(kSecond));
  clocks.Take(FileStamp(), After(kSecond));
  EXPECT_TRUE(clocks.IsSettled(Changed(0), After(kSecond)));
}

TEST(DiskClocksTest, AClockThatIsSeenToHaveBeenSetBackIsNoLongerKnown) {
  DiskClocks clocks;
  clocks.Take(Changed(60 * kSecond), After(60 * kSecond));
  FileStamp other = Changed(-3600 * kSecond);
  other.inode = 9;
  clocks.SeeChange(Changed(0), other);
  clocks.SeeChange(Changed(0), Changed(1));
  clocks.SeeChange(Changed(0), Changed(0));
  EXPECT_TRUE(clocks.IsSettled(Changed(0), After(60 * kSecond))) << "nothing of the kind was seen";
  clocks.SeeChange(Changed(0), Changed(-1));
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(60 * kSecond)));
  clocks.Take(Changed(-3600 * kSecond), After(60 * kSecond));
  EXPECT_FALSE(clocks.IsSettled(Changed(-3600 * kSecond), After(60 * kSecond)));
  EXPECT_TRUE(clocks.IsSettled(Changed(-3600 * kSecond), After(61 * kSecond)));
}

TEST(DiskClocksTest, ATimeOfModificationThatWasSetProvesNothing) {
  DiskClocks clocks;
  FileStamp set = Changed(-10 * kSecond);
  set.modified_ns = kStart + kSecond - 1;
  clocks.Take(set, After(kSecond));
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(kSecond)));
}

TEST(DiskClocksTest, ATimeOfTheFutureTellsNothingOfADisksClock) {
  DiskClocks clocks;
  clocks.Take(Changed(3600 * kSecond), After(0));
  EXPECT_FALSE(clocks.IsSettled(Changed(0, kSecond), After(kMillisecond)));
  FileStamp now = Changed(0);
  now.modified_ns = now.changed_ns = kStart;
  clocks.Take(now, After(0));  // this very moment is none of the future
  EXPECT_TRUE(clocks.IsSettled(Changed(0), After(kSecond)));
}

TEST(DiskClocksTest, WithoutATimeOfChangeThatOfTheModificationStandsIn) {
  DiskClocks clocks;
  FileStamp stamp = Changed(0);
  stamp.changed_ns = 0;
  clocks.Take(stamp, After(0));
  EXPECT_FALSE(clocks.IsSettled(stamp, After(50 * kMillisecond)));
  EXPECT_TRUE(clocks.IsSettled(stamp, After(kSecond)));
}

TEST(DiskClocksTest, AFileIsSettledBehindTheLastNanosecondOfItsGrain) {
  DiskClocks clocks;
  clocks.Take(Changed(kSecond), After(kSecond));
  const std::int64_t known_behind = 1;  // Changed is a nanosecond before its moment
  const std::int64_t grain = 100 * kMillisecond;
  EXPECT_FALSE(clocks.IsSettled(Changed(0), After(grain - 1 + known_behind)));
  EXPECT_TRUE(clocks.IsSettled(Changed(0), After(grain + known_behind)));
}

TEST(DiskClocksTest, StampsInWholeSecondsSettleLater) {
  DiskClocks clocks;
  clocks.Take(Changed(3 * kSecond), After(3 * kSecond));
  FileStamp whole = Changed(0);
  whole.modified_ns = whole.changed_ns = kStart;
  EXPECT_FALSE(clocks.IsSettled(whole, After(2400 * kMillisecond)));
  EXPECT_TRUE(clocks.IsSettled(whole, After(2600 * kMillisecond)));
}

}  // namespace
}  // namespace logbook
