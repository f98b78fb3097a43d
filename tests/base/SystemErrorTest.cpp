// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/SystemError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

TEST(SystemErrorTest, TheFolderPartOfAPathIsWhatStandsBeforeItsLastSlash) {
  const std::pair<const char*, const char*> cases[] = {
      {"/a", "/"}, {"/a/b", "/a"}, {"/a/b/c", "/a/b"}, {"a", "."}, {"a/b", "a"}, {"ab/c", "ab"}};
  for (const auto& [path, folder] : cases) EXPECT_EQ(posix::ParentOf(path), folder) << path;
}

TEST(SystemErrorTest, AFolderIsOneThroughLinksTooAndAFileIsNone) {
  const TestMachine machine;
  machine.Put("C:\\file", "a");
  std::filesystem::create_symlink("c", machine.home() + "/drives/link");
  EXPECT_TRUE(posix::IsFolder(machine.Native("C:\\")));
  EXPECT_TRUE(posix::IsFolder(machine.home() + "/drives/link"));
  EXPECT_FALSE(posix::IsFolder(machine.Native("C:\\file")));
  EXPECT_FALSE(posix::IsFolder(machine.Native("C:\\none")));
}

TEST(SystemErrorTest, WithoutRoomForThisUserTheDiskIsFull) {
  EXPECT_EQ(NumberRaisedBy([] { posix::RaiseFileError(EDQUOT, "/a"); }), 61);
  EXPECT_EQ(NumberRaisedBy([] { posix::RaiseFolderError(EDQUOT); }), 61);
  EXPECT_EQ(NumberRaisedBy([] { posix::RaiseReadError(ENOMEM); }), 7);
  EXPECT_EQ(NumberRaisedBy([] { posix::RaiseReadError(EIO); }), 57);
}

}  // namespace
}  // namespace logbook::test
