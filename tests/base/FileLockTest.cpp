// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FileLock.h"

#include <gtest/gtest.h>

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

TEST(FileLockTest, ALockThatCannotBeMadeIsAnErrorAndNotSomebodyElses) {
  const TestMachine disk;
  EXPECT_EQ(
      NumberRaisedBy([&] { FileLock(disk.Native("C:\\no\\lock"), FileLock::Patience::kTry); }), 76);
}

}  // namespace
}  // namespace logbook::test
