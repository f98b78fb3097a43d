// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

constexpr uid_t kNobody = 65534;

mode_t ModeOf(const TestMachine& machine, const char* path) {
  struct stat status = {};
  stat(machine.Native(path).c_str(), &status);
  return status.st_mode & 07777;
}

TEST(PrivateFolderTest, AFolderIsItsOwnersAloneWhetherItIsNewOrNot) {
  const TestMachine machine;
  MakePrivateFolder(machine, "C:\\new");
  EXPECT_EQ(ModeOf(machine, "C:\\new"), 0700u);
  machine.Put("C:\\old\\a.txt", "a");
  chmod(machine.Native("C:\\old").c_str(), 0755);
  MakePrivateFolder(machine, "C:\\old\\");
  EXPECT_EQ(ModeOf(machine, "C:\\old"), 0700u);
  EXPECT_EQ(machine.Get("C:\\old\\a.txt"), "a");
}

TEST(PrivateFolderTest, ANewFolderIsOnTheDiskWithItsName) {
  const TestMachine machine;
  const DiskCalls calls;
  MakePrivateFolder(machine, "C:\\new");
  EXPECT_EQ(DiskCalls::Count("fsync "), 1);
  MakePrivateFolder(machine, "C:\\new");
  EXPECT_EQ(DiskCalls::Count("fsync "), 1);
}

TEST(PrivateFolderTest, AFileOfTheNameIsError75AndAMissingParent76) {
  const TestMachine machine;
  machine.Put("C:\\file", "bytes");
  EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(machine, "C:\\file"); }), 75);
  EXPECT_EQ(machine.Get("C:\\file"), "bytes");
  EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(machine, "C:\\none\\new"); }), 76);
}

TEST(PrivateFolderTest, AFolderOrALinkOfAnotherUserIsError70) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can make what is another user's";
  const TestMachine machine;
  machine.MakeFolders("C:\\theirs");
  ASSERT_EQ(chown(machine.Native("C:\\theirs").c_str(), kNobody, kNobody), 0);
  machine.MakeFolders("C:\\ours");
  chmod(machine.Native("C:\\ours").c_str(), 0755);
  fs::create_directory_symlink("ours", machine.Native("C:\\link"));
  ASSERT_EQ(lchown(machine.Native("C:\\link").c_str(), kNobody, kNobody), 0);
  for (const char* path : {"C:\\theirs", "C:\\link"})
    EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(machine, path); }), 70) << path;
  EXPECT_EQ(ModeOf(machine, "C:\\ours"), 0755u);
}

TEST(PrivateFolderTest, AFileOfAnotherUserIsError75AsOnesOwnAndALinkThatLeadsNowhere76) {
  const TestMachine machine;
  fs::create_symlink("nowhere", machine.Native("C:\\broken"));
  EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(machine, "C:\\broken"); }), 76);
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can make what is another user's";
  machine.Put("C:\\file", "bytes");
  ASSERT_EQ(chown(machine.Native("C:\\file").c_str(), kNobody, kNobody), 0);
  EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(machine, "C:\\file"); }), 75);
}

TEST(PrivateFolderTest, ALinkOfOnesOwnOrTheAdministratorsLeadsToAFolderOfOnesOwn) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can make what is another user's";
  const TestMachine machine;
  chmod(machine.home().c_str(), 0755);
  machine.MakeFolders("C:\\theirs");
  ASSERT_EQ(chown(machine.Native("C:\\theirs").c_str(), kNobody, kNobody), 0);
  fs::create_directory_symlink("theirs", machine.Native("C:\\of the administrator"));
  fs::create_directory_symlink("theirs", machine.Native("C:\\of the user"));
  ASSERT_EQ(lchown(machine.Native("C:\\of the user").c_str(), kNobody, kNobody), 0);
  {
    const AsOrdinaryUser user;
    for (const char* path : {"C:\\of the administrator", "C:\\of the user"})
      EXPECT_EQ(NumberRaisedBy([&] { MakePrivateFolder(machine, path); }), std::nullopt) << path;
  }
  EXPECT_EQ(ModeOf(machine, "C:\\theirs"), 0700u);
}

TEST(PrivateFolderTest, NothingIsHiddenInAFolderOfAnotherUser) {
  if (geteuid() != 0) GTEST_SKIP() << "only the administrator can make what is another user's";
  const TestMachine machine;
  machine.MakeFolders("C:\\theirs\\one");
  ASSERT_EQ(chown(machine.Native("C:\\theirs").c_str(), kNobody, kNobody), 0);
  HideFolder(machine, "C:\\theirs\\one");
  EXPECT_FALSE(machine.Has("C:\\theirs\\.hidden"));
}

TEST(PrivateFolderTest, AHiddenFolderStandsOnceInTheListOfTheFolderAbove) {
  const TestMachine machine;
  machine.MakeFolders("C:\\one");
  HideFolder(machine, "C:\\one\\");
  HideFolder(machine, "C:\\one");
  HideFolder(machine, "C:\\two");
  EXPECT_EQ(machine.Get("C:\\.hidden"), "one\ntwo\n");
}

TEST(PrivateFolderTest, ALastLineWithoutALineEndIsNotJoinedWithTheName) {
  const TestMachine machine;
  machine.Put("C:\\.hidden", "by hand");
  HideFolder(machine, "C:\\one");
  HideFolder(machine, "C:\\one");
  EXPECT_EQ(machine.Get("C:\\.hidden"), "by hand\none\n");
  machine.Put("C:\\.hidden", "two\none");
  HideFolder(machine, "C:\\one");
  EXPECT_EQ(machine.Get("C:\\.hidden"), "two\none");
}

}  // namespace
}  // namespace logbook::test
