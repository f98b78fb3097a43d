// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FileLock.h"

#include <gtest/gtest.h>

#include <thread>

#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

TEST(FileLockTest, ALockIsHeldByOneAtATime) {
  const TestMachine disk;
  const std::string path = disk.Native("C:\\lock");
  {
    const FileLock first(path, FileLock::Patience::kTry);
    EXPECT_TRUE(first.IsHeld());
    EXPECT_FALSE(FileLock(path, FileLock::Patience::kTry).IsHeld());
  }
  EXPECT_TRUE(FileLock(path, FileLock::Patience::kTry).IsHeld());
}

TEST(FileLockTest, WhoWaitsHoldsTheLockInTheEnd) {
  const TestMachine disk;
  const std::string path = disk.Native("C:\\lock");
  std::thread other;
  bool is_held = false;
  {
    const FileLock first(path, FileLock::Patience::kWait);
    EXPECT_TRUE(first.IsHeld());
    other = std::thread([&] { is_held = FileLock(path, FileLock::Patience::kWait).IsHeld(); });
  }
  other.join();
  EXPECT_TRUE(is_held);
}

TEST(FileLockTest, ALockThatCannotBeMadeIsAnErrorAndNotSomebodyElses) {
  const TestMachine disk;
  EXPECT_EQ(
      NumberRaisedBy([&] { FileLock(disk.Native("C:\\no\\lock"), FileLock::Patience::kTry); }), 76);
}

}  // namespace
}  // namespace logbook::test
