// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/FilesBelow.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "support/DiskCalls.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

using Found = FilesBelow::Found;

class FilesBelowTest : public testing::Test {
 protected:
  // The bytes of a file of the folder "log", or why there are none. Look and Read must agree.
  std::string Read(const std::string& name, const std::string& sub = "log") {
    FilesBelow files(machine, "C:\\Logs\\");
    FileStamp looked_at, read;
    std::string_view bytes;
    const Found found = files.Read(sub, name, read, bytes);
    EXPECT_EQ(files.Look(sub, name, looked_at), found) << name;
    if (found == Found::kMissing) return "(missing)";
    if (found == Found::kUnclear) return "(unclear)";
    EXPECT_EQ(looked_at, read);
    EXPECT_EQ(read, StampOf(machine, "C:\\Logs\\" + sub + "\\" + name));
    return std::string(bytes);
  }
  void Put(const std::string& name, const std::string& bytes) {
    machine.Put("C:\\Logs\\log\\" + name, bytes);
  }
  fs::path Folder() const { return machine.Native("C:\\Logs\\log"); }

  test::TestMachine machine;
};

TEST_F(FilesBelowTest, ANameIsFoundExactlyElseInItsFirstSpelling) {
  Put("A.Txt", "mixed");
  EXPECT_EQ(Read("a.txt"), "mixed");
  Put("A.TXT", "capitals");
  EXPECT_EQ(Read("a.txt"), "capitals");
  Put("a.txt", "exact");
  EXPECT_EQ(Read("a.txt"), "exact");
  EXPECT_EQ(Read("A.txt"), "capitals");
  Put("\xC3\xA4.txt", "umlaut");
  EXPECT_EQ(Read("\xC3\x84.txt"), "umlaut");
}

TEST_F(FilesBelowTest, TheSpellingInCapitalsGoesBeforeOneWithASmallLetter) {
  for (const char letter : {'a', 'b', 'y', 'z'}) {
    const std::string small(1, letter);
    const std::string capital(1, static_cast<char>(letter - 'a' + 'A'));
    Put(small + ".TXT", "small");
    Put(capital + ".TXT", "capitals");
    EXPECT_EQ(Read(small + ".txt"), "capitals") << letter;
  }
}

TEST_F(FilesBelowTest, AFolderThatCannotBeSearchedHasNotTheNamesOfAnother) {
  Put("a.txt", "1");
  FilesBelow files(machine, "C:\\Logs\\");
  FileStamp stamp;
  std::string_view bytes;
  EXPECT_EQ(files.Read("log", "none.txt", stamp, bytes), Found::kMissing);
  for (int round = 0; round < 2; ++round)
    EXPECT_EQ(files.Read("missing", "none.txt", stamp, bytes), Found::kUnclear);
}

TEST_F(FilesBelowTest, AFileOfWhichTheDiskGivesAPartIsUnclear) {
  Put("a.txt", "0123456789");
  FilesBelow files(machine, "C:\\Logs\\");
  FileStamp stamp;
  std::string_view bytes;
  const test::DiskCalls calls;
  test::DiskCalls::FailReads((Folder() / "a.txt").string(), 5);
  EXPECT_EQ(files.Read("log", "a.txt", stamp, bytes), Found::kUnclear);
}

TEST_F(FilesBelowTest, TheFolderHasTheStampThatItHasByItsPath) {
  machine.MakeFolders("C:\\Logs\\log\\x");
  EXPECT_EQ(FilesBelow(machine, "C:\\Logs\\").Stamp(), StampOf(machine, "C:\\Logs"));
  EXPECT_NE(FilesBelow(machine, "C:\\Logs\\").Stamp(), FileStamp());
  EXPECT_EQ(FilesBelow(machine, "C:\\None\\").Stamp(), FileStamp());
  Put("file.txt", "no folder");
  EXPECT_EQ(FilesBelow(machine, "C:\\Logs\\log\\file.txt").Stamp(), FileStamp());
}

TEST_F(FilesBelowTest, AFileIsReadWholeUpToTheLimitOnly) {
  Put("empty.txt", "");
  EXPECT_EQ(Read("empty.txt"), "");
  const std::string most(FilesBelow::kMostBytes, 'x');
  Put("most.txt", most);
  EXPECT_EQ(Read("most.txt"), most);
  Put("large.txt", most + "x");
  EXPECT_EQ(Read("large.txt"), "(unclear)");
}

TEST_F(FilesBelowTest, WhatIsNoOrdinaryFileIsUnclear) {
  Put("file.txt", "1");
  EXPECT_EQ(Read("none.txt"), "(missing)");
  fs::create_symlink("file.txt", Folder() / "link.txt");
  EXPECT_EQ(Read("link.txt"), "(unclear)");
  fs::create_directory(Folder() / "folder");
  EXPECT_EQ(Read("folder"), "(unclear)");
  ASSERT_EQ(mkfifo((Folder() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(Read("pipe"), "(unclear)");
  for (const char* name : {"", "a\\b", "a/b"}) EXPECT_EQ(Read(name), "(unclear)") << name;
  EXPECT_EQ(Read("file.txt", "missing"), "(unclear)");
  for (const char* sub : {"", "log/../log", "log\\"}) EXPECT_EQ(Read("file.txt", sub), "(unclear)");
}

TEST_F(FilesBelowTest, ALinkThatLeadsNowhereKeepsItsNameFromOtherSpellings) {
  Put("A.TXT", "capitals");
  fs::create_symlink("nowhere", Folder() / "a.txt");
  EXPECT_EQ(Read("a.txt"), "(unclear)");
}

TEST_F(FilesBelowTest, NothingIsClearBelowAFolderThatIsNotThere) {
  FilesBelow files(machine, "C:\\None");
  FileStamp stamp;
  std::string_view bytes;
  EXPECT_EQ(files.Read("log", "a.txt", stamp, bytes), Found::kUnclear);
}

}  // namespace
}  // namespace logbook
