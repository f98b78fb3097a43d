// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/LockedFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include "base/FileLock.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

namespace fs = std::filesystem;

class LockedFileTest : public testing::Test {
 protected:
  LockedFileTest() { machine_.MakeFolders("C:\\work"); }

  std::string Path(const std::string& name) const {
    return machine_.Native("C:\\work") + "/" + name;
  }
  void Put(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
  }
  // True if a file of this name is gone after the removal of what begins with "PK".
  bool IsRemoved(const std::string& name) const {
    posix::RemoveLeftFiles(
        machine_.Native("C:\\work"), [](std::string_view each) { return each.ends_with(".part"); },
        "PK");
    return !fs::exists(fs::symlink_status(Path(name)));
  }
  bool IsRemovedWith(const std::string& bytes) const {
    Put("a.part", bytes);
    return IsRemoved("a.part");
  }

  TestMachine machine_;
};

TEST_F(LockedFileTest, ANewFileIsLockedAndBearsItsMode) {
  const mode_t mask = umask(0);
  const posix::Descriptor made = posix::MakeLockedFile(Path("a.part"), 0640);
  umask(mask);
  ASSERT_TRUE(made.IsOpen());
  struct stat status = {};
  ASSERT_EQ(stat(Path("a.part").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  const posix::Descriptor other(open(Path("a.part").c_str(), O_RDWR));
  EXPECT_NE(flock(other.Number(), LOCK_EX | LOCK_NB), 0);
}

TEST_F(LockedFileTest, AFileThatIsThereIsNotMadeAndStays) {
  Put("a.part", "PK of somebody");
  EXPECT_FALSE(posix::MakeLockedFile(Path("a.part"), 0600).IsOpen());
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(fs::file_size(Path("a.part")), 14u);
}

TEST_F(LockedFileTest, WhatAKilledWriterLeftIsRemovedByItsNameAndItsBeginning) {
  EXPECT_TRUE(IsRemovedWith("PK and more"));
  EXPECT_TRUE(IsRemovedWith("PK"));
  EXPECT_TRUE(IsRemovedWith("P"));
  EXPECT_TRUE(IsRemovedWith(""));
  EXPECT_TRUE(IsRemovedWith(std::string(100, '\0')));
  EXPECT_FALSE(IsRemovedWith("PX and more"));
  EXPECT_FALSE(IsRemovedWith("X"));
  EXPECT_FALSE(IsRemovedWith(std::string("\0K", 2)));
  Put("a.zip", "PK");
  EXPECT_FALSE(IsRemoved("a.zip"));
}

TEST_F(LockedFileTest, AFileOfAWriterAtWorkStays) {
  {
    const posix::Descriptor writer = posix::MakeLockedFile(Path("a.part"), 0600);
    EXPECT_FALSE(IsRemoved("a.part"));
  }
  EXPECT_TRUE(IsRemoved("a.part"));
}

TEST_F(LockedFileTest, WhatIsNoFileOfOursStays) {
  Put("target", "PK");
  fs::create_symlink("target", Path("link.part"));
  EXPECT_FALSE(IsRemoved("link.part"));
  fs::create_directory(Path("folder.part"));
  EXPECT_FALSE(IsRemoved("folder.part"));
  ASSERT_EQ(mkfifo(Path("pipe.part").c_str(), 0600), 0);
  EXPECT_FALSE(IsRemoved("pipe.part"));
  constexpr uid_t kNobody = 65534;
  if (geteuid() != 0) return;  // only root can make a device, and give a file away
  if (mknod(Path("zeros.part").c_str(), S_IFCHR | 0600, makedev(1, 5)) == 0) {
    EXPECT_FALSE(IsRemoved("zeros.part"));
  }
  Put("foreign.part", "PK");
  ASSERT_EQ(chown(Path("foreign.part").c_str(), kNobody, kNobody), 0);
  EXPECT_FALSE(IsRemoved("foreign.part"));
}

TEST_F(LockedFileTest, ALinkInTheLocksPlaceIsAnErrorAndMakesNoFileBehindIt) {
  fs::create_symlink("elsewhere", Path("lock"));
  for (const auto patience : {FileLock::Patience::kTry, FileLock::Patience::kWait})
    EXPECT_EQ(NumberRaisedBy([&] { FileLock(Path("lock"), patience); }), 57);
  EXPECT_FALSE(fs::exists(Path("elsewhere")));
}

}  // namespace
}  // namespace logbook::test
