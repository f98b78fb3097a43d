// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/NativeDisk.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "support/DiskCalls.h"
#include "support/Errors.h"
#include "support/Refusals.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using native::Kind;
using native::Links;
using testing::ElementsAre;
using testing::IsEmpty;

class NativeDiskTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) { return disk.Native("C:\\" + name); }
  Kind KindOf(const std::string& name, Links links = Links::kAsThemselves) {
    Kind kind = Kind::kOther;
    EXPECT_FALSE(native::LookAt(Path(name), links, kind)) << name;
    return kind;
  }
  // Copies a file of these bytes, with files that may grow so far only.
  std::error_code Copy(const std::string& bytes, rlim_t most) {
    disk.Put("C:\\from", bytes);
    native::Reader in;
    EXPECT_FALSE(in.Open(Path("from"), Links::kFollowed));
    const SmallFilesOnly limit(most);
    return native::CopyAndSync(in, Path("to"));
  }

  TestMachine disk;
};

TEST_F(NativeDiskTest, ALookTellsWhatBearsAName) {
  disk.Put("C:\\file", "a");
  disk.MakeFolders("C:\\folder");
  fs::create_symlink("folder", Path("link"));
  fs::create_symlink("nowhere", Path("loose"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(KindOf("file"), Kind::kFile);
  EXPECT_EQ(KindOf("folder"), Kind::kFolder);
  EXPECT_EQ(KindOf("link"), Kind::kLink);
  EXPECT_EQ(KindOf("link", Links::kFollowed), Kind::kFolder);
  EXPECT_EQ(KindOf("loose"), Kind::kLink);
  EXPECT_EQ(KindOf("loose", Links::kFollowed), Kind::kNothing);
  EXPECT_EQ(KindOf("pipe"), Kind::kOther);
  EXPECT_EQ(KindOf("nothing"), Kind::kNothing);
}

TEST_F(NativeDiskTest, WhatCannotBeToldIsAnErrorAndNotNothing) {
  disk.Put("C:\\file", "a");
  Kind kind = Kind::kFile;
  EXPECT_EQ(native::LookAt(Path("file/below"), Links::kFollowed, kind), std::errc::not_a_directory);
  EXPECT_EQ(kind, Kind::kNothing);
}

TEST_F(NativeDiskTest, ATakenNameMakesNoFolder) {
  EXPECT_FALSE(native::MakeFolder(Path("mine"), native::Audience::kOwner));
  EXPECT_EQ(native::MakeFolder(Path("mine"), native::Audience::kUsers), std::errc::file_exists);
  struct stat status = {};
  ASSERT_EQ(stat(Path("mine").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
  EXPECT_EQ(native::MakeFolder(Path("none/mine"), native::Audience::kOwner),
            std::errc::no_such_file_or_directory);
}

TEST_F(NativeDiskTest, ATreeGoesAsAWholeAndLinksAsThemselves) {
  disk.Put("C:\\tree\\sub\\a.txt", "a");
  disk.Put("C:\\other\\b.txt", "b");
  fs::create_symlink("../other", Path("tree/link"));
  EXPECT_TRUE(native::RemoveFolder(Path("tree")));
  EXPECT_FALSE(native::RemoveTree(Path("tree")));
  EXPECT_EQ(KindOf("tree"), Kind::kNothing);
  disk.Put("C:\\alone", "a");
  errno = EIO;  // of some call before
  EXPECT_FALSE(native::RemoveTree(Path("alone")));
  EXPECT_TRUE(disk.Has("C:\\other\\b.txt"));
}

TEST_F(NativeDiskTest, NamesComeInOrderAndAllOrNone) {
  for (const char* name : {"b", "a", ".hidden", "B"})
    disk.Put(std::string("C:\\folder\\") + name, "");
  std::vector<std::string> names = {"old"};
  EXPECT_FALSE(native::NamesIn(Path("folder"), names));
  EXPECT_THAT(names, ElementsAre(".hidden", "B", "a", "b"));
  EXPECT_EQ(native::NamesIn(Path("none"), names), std::errc::no_such_file_or_directory);
  EXPECT_THAT(names, IsEmpty());
}

TEST_F(NativeDiskTest, EntriesSayWhatBearsEachName) {
  disk.Put("C:\\folder\\file", "");
  disk.MakeFolders("C:\\folder\\below");
  fs::create_symlink("file", Path("folder/link"));
  fs::create_symlink("nowhere", Path("folder/loose"));
  ASSERT_EQ(mkfifo(Path("folder/pipe").c_str(), 0600), 0);
  std::vector<native::Entry> entries;
  EXPECT_FALSE(native::EntriesIn(Path("folder"), entries));
  std::vector<std::pair<std::string, Kind>> seen;
  for (const native::Entry& entry : entries) seen.emplace_back(entry.name, entry.kind);
  using testing::Pair;
  EXPECT_THAT(seen, ElementsAre(Pair("below", Kind::kFolder), Pair("file", Kind::kFile),
                                Pair("link", Kind::kLink), Pair("loose", Kind::kLink),
                                Pair("pipe", Kind::kOther)));
}

TEST_F(NativeDiskTest, AReaderStartsAgainWhereItIsSentTo) {
  disk.Put("C:\\file", "abcdef");
  native::Reader reader;
  ASSERT_FALSE(reader.Open(Path("file"), Links::kAsThemselves));
  EXPECT_EQ(reader.Size(), 6u);
  char bytes[8] = {};
  EXPECT_EQ(reader.Read(bytes, sizeof bytes), 6u);
  EXPECT_EQ(reader.Read(bytes, sizeof bytes), 0u);
  EXPECT_FALSE(reader.SeekTo(0));
  EXPECT_EQ(reader.Read(bytes, 1), 1u);
  EXPECT_EQ(bytes[0], 'a');
  EXPECT_FALSE(reader.SeekTo(4));
  EXPECT_EQ(reader.Read(bytes, sizeof bytes), 2u);
  EXPECT_EQ(std::string(bytes, 2), "ef");
  EXPECT_FALSE(reader.Failure());
  EXPECT_EQ(reader.Open(Path("none"), Links::kFollowed), std::errc::no_such_file_or_directory);
}

TEST_F(NativeDiskTest, OnlyAFileIsReadAndALinkOnlyIfItMayBeFollowed) {
  disk.Put("C:\\file", "a");
  disk.MakeFolders("C:\\folder");
  fs::create_symlink("file", Path("link"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  native::Reader reader;
  EXPECT_EQ(reader.Open(Path("folder"), Links::kFollowed), std::errc::is_a_directory);
  EXPECT_EQ(reader.Open(Path("pipe"), Links::kFollowed), std::errc::not_supported);
  EXPECT_LT(open(Path("pipe").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC), 0) << "nobody reads it";
  EXPECT_EQ(reader.Open(Path("link"), Links::kAsThemselves),
            std::errc::too_many_symbolic_link_levels);
  EXPECT_FALSE(reader.Open(Path("link"), Links::kFollowed));
}

TEST_F(NativeDiskTest, AFileBehindALinkIsFoundInItsFolderAlone) {
  disk.Put("C:\\folder\\sub\\a.txt", "a");
  disk.Put("C:\\folder2\\b.txt", "b");
  const auto link = [&](const char* target) {
    fs::remove(Path("folder/link"));
    fs::create_symlink(target, Path("folder/link"));
    return native::FileBehind(Path("folder/link"), Path("folder"));
  };
  EXPECT_EQ(link("sub/a.txt"), fs::canonical(Path("folder/sub/a.txt")).string());
  for (const char* target : {"../folder2/b.txt", "sub", "..", "nowhere", "link", "/dev/null"})
    EXPECT_EQ(link(target), "") << target;
}

TEST_F(NativeDiskTest, APipeIsNotWaitedForWhenItIsToBeBroughtToTheDisk) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(native::Sync(Path("pipe")));
}

TEST_F(NativeDiskTest, ACopyHasAllBytesOrNothingIsLeftOfIt) {
  const std::string bytes(600000, 'x');
  EXPECT_FALSE(Copy(bytes, RLIM_INFINITY));
  EXPECT_EQ(disk.Get("C:\\to"), bytes);
  EXPECT_EQ(Copy(bytes, 300000), std::errc::file_too_large);
  EXPECT_FALSE(disk.Has("C:\\to"));
}

TEST_F(NativeDiskTest, ACopyIsOnTheDiskAndNothingIsLeftOfOneThatCouldNotBeReadToItsEnd) {
  disk.Put("C:\\from", std::string(600000, 'x'));
  const DiskCalls calls;
  native::Reader whole;
  ASSERT_FALSE(whole.Open(Path("from"), Links::kFollowed));
  EXPECT_FALSE(native::CopyAndSync(whole, Path("to")));
  EXPECT_EQ(DiskCalls::Count("fsync "), 1);
  EXPECT_FALSE(whole.Failure());
  DiskCalls::FailReads(Path("from"), 300000);
  native::Reader part;
  ASSERT_FALSE(part.Open(Path("from"), Links::kFollowed));
  native::CopyAndSync(part, Path("to"));
  EXPECT_EQ(part.Failure(), std::errc::io_error);
  EXPECT_FALSE(disk.Has("C:\\to"));
  EXPECT_EQ(DiskCalls::Count("fsync "), 1);
  ASSERT_FALSE(part.Open(Path("from"), Links::kFollowed));
  EXPECT_FALSE(part.Failure()) << "of the file before";
}

TEST_F(NativeDiskTest, WhatIsThereIsBroughtToTheDiskAndWhatIsNotIsAnError) {
  disk.Put("C:\\file", "a");
  const DiskCalls calls;
  EXPECT_FALSE(native::Sync(Path("file")));
  EXPECT_EQ(DiskCalls::Count("fsync "), 1);
  EXPECT_EQ(native::Sync(Path("none")), std::errc::no_such_file_or_directory);
}

TEST_F(NativeDiskTest, AFolderForUsersHasTheModeThatTheUsersMaskLeaves) {
  const mode_t mask = umask(027);
  EXPECT_FALSE(native::MakeFolder(Path("users"), native::Audience::kUsers));
  umask(mask);
  struct stat status = {};
  ASSERT_EQ(stat(Path("users").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0750u);
}

TEST_F(NativeDiskTest, ANameIsGivenOrTheSystemSaysWhyNot) {
  disk.Put("C:\\a", "bytes");
  EXPECT_FALSE(native::Rename(Path("a"), Path("b")));
  EXPECT_EQ(disk.Get("C:\\b"), "bytes");
  EXPECT_EQ(native::Rename(Path("a"), Path("c")), std::errc::no_such_file_or_directory);
  EXPECT_FALSE(native::RemoveTree(Path("none")));
  EXPECT_EQ(native::RemoveTree(Path("b/below")), std::errc::not_a_directory);
  std::vector<native::Entry> entries(1);
  EXPECT_EQ(native::EntriesIn(Path("none"), entries), std::errc::no_such_file_or_directory);
  EXPECT_THAT(entries, IsEmpty());
}

TEST_F(NativeDiskTest, OfATreeGoesWhatMayGoAndTheRestIsAnError) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can make what another user may not delete";
  chmod(disk.home().c_str(), 0755);
  for (const char* name : {"a", "keep\\file", "z"}) disk.Put(std::string("C:\\tree\\") + name, "");
  for (const char* open : {"", "tree"}) chmod(Path(open).c_str(), 0777);
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(native::RemoveTree(Path("tree")), std::errc::permission_denied);
  }
  EXPECT_TRUE(disk.Has("C:\\tree\\keep\\file"));
  EXPECT_FALSE(disk.Has("C:\\tree\\a"));
  EXPECT_FALSE(disk.Has("C:\\tree\\z"));
}

TEST_F(NativeDiskTest, AnErrorIsRaisedWithTheNumberOfItsKind) {
  const auto missing = std::make_error_code(std::errc::no_such_file_or_directory);
  EXPECT_EQ(NumberRaisedBy([&] { native::RaiseFileError(missing, Path("a")); }), 53);
  EXPECT_EQ(NumberRaisedBy([&] { native::RaiseFileError(missing, Path("none/a")); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { native::RaiseFolderError(missing); }), 76);
  const auto refused = std::make_error_code(std::errc::permission_denied);
  EXPECT_EQ(NumberRaisedBy([&] { native::RaiseFolderError(refused); }), 70);
}

}  // namespace
}  // namespace logbook::test
