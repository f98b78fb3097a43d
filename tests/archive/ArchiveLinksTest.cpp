// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What stays outside of an archive and untouched by it: what links lead to, and the working files
// of others.

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "Archiving.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using ArchiveLinksTest = Archiving;

TEST_F(ArchiveLinksTest, ALinkToAFileOfTheSameLogIsThatFile) {
  disk.Put("C:\\log\\sub\\a.txt", "bytes of a");
  disk.Put("C:\\log\\b.txt", "b");
  const auto link = [&](const fs::path& target, const std::string& name) {
    fs::create_symlink(target, disk.Native("C:\\log\\" + name));
  };
  link("sub/a.txt", "down.txt");
  link("../b.txt", "sub\\up.txt");
  link(disk.Native("C:\\log\\b.txt"), "absolute.txt");
  link("down.txt", "twice.txt");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Names(),
            "log/\nlog/absolute.txt\nlog/b.txt\nlog/down.txt\nlog/sub/\nlog/sub/a.txt\n"
            "log/sub/up.txt\nlog/twice.txt\n");
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  EXPECT_EQ(RunProgram("unzip -p " + zip + " log/twice.txt").output, "bytes of a");
  EXPECT_EQ(RunProgram("unzip -p " + zip + " log/sub/up.txt").output, "b");
}

TEST_F(ArchiveLinksTest, EveryOtherLinkIsLeftOutAndNothingIsSaidOfIt) {
  disk.Put("C:\\log\\sub\\a.txt", "a");
  disk.Put("C:\\logbook\\other.txt", "not of this log, though its folder begins alike");
  disk.Put("C:\\tree\\deep\\secret.txt", "not of this log");
  const auto link = [&](const fs::path& target, const std::string& name) {
    fs::create_symlink(target, disk.Native("C:\\log\\" + name));
  };
  link("../tree/deep/secret.txt", "file.txt");
  link("../tree", "tree");
  link(disk.Native("C:\\tree\\deep"), "sub\\absolute");
  link("../logbook/other.txt", "other.txt");
  link("sub", "inner");
  link("..", "up");
  link(".", "self");
  link("nowhere", "loose.txt");
  link("loop.txt", "loop.txt");
  link("/dev/null", "device");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(result[0], '\0') << result;
  EXPECT_EQ(Names(), "log/\nlog/sub/\nlog/sub/a.txt\n");
}

TEST_F(ArchiveLinksTest, ALogFolderThatIsALinkIsRead) {
  disk.Put("C:\\elsewhere\\real\\a.txt", "a");
  disk.MakeFolders("C:\\maintain");
  fs::create_directory_symlink("../elsewhere/real", disk.Native("C:\\maintain\\26111500"));
  fs::create_symlink("a.txt", disk.Native("C:\\elsewhere\\real\\same.txt"));
  EXPECT_EQ(Zip("C:\\maintain\\26111500"), 0);
  EXPECT_EQ(Names(), "26111500/\n26111500/a.txt\n26111500/same.txt\n");
}

TEST_F(ArchiveLinksTest, ALinkThatStandsWhereAWorkingFileGoesIsNotWrittenThrough) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\victim.txt", "dear");
  EXPECT_EQ(Zip("C:\\one"), 0);
  for (const char* name : {"C:\\.out.zip.1.part", "C:\\.out.zip.2.part2"})
    fs::create_symlink("victim.txt", disk.Native(name));
  EXPECT_EQ(Zip("C:\\one"), 0);
  EXPECT_EQ(disk.Get("C:\\victim.txt"), "dear");
  EXPECT_EQ(Names(), "one/\none/a.txt\n");
}

using ArchiveLeftTest = Archiving;

// As a writer leaves it that dies within a call for this zip file.
void DieWriting(const TestMachine& disk, const std::string& zip) {
  const pid_t child = fork();
  if (child == 0) {
    ZipWriter writer(disk);
    std::string result(kZipResultBuffer, '\0');
    writer.arZip(0, zip, "C:\\log", "-a -r", result);
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
}

TEST_F(ArchiveLeftTest, WhatAKilledWriterHasLeftGoesWithTheNextArchiveOfTheFolder) {
  disk.Put("C:\\log\\a.txt", "a");
  DieWriting(disk, "C:\\out.zip");
  EXPECT_EQ(LeftOvers(), 1);
  DieWriting(disk, "C:\\other.zip");
  EXPECT_EQ(LeftOvers(), 1) << "its own; the first one's is gone";
  disk.Put("C:\\.third.zip.2.part", "");
  disk.Put("C:\\.third.zip.2.part2", "PK\3\4 and more");
  disk.Put("C:\\.fourth.zip.1.part", std::string(5000, '\0'));
  ASSERT_EQ(LeftOvers(), 4);
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(LeftOvers(), 0);
  EXPECT_EQ(Names(), "log/\nlog/a.txt\n");
}

TEST_F(ArchiveLeftTest, WhatAnotherWriterIsAtWorkOnStays) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\two\\b.txt", "b");
  result.assign(kZipResultBuffer, '\0');
  ZipWriter first(disk);
  EXPECT_EQ(first.arZip(0, "C:\\out.zip", "C:\\one", "-a -r", result), 0);
  EXPECT_EQ(Zip("C:\\two"), 0);
  EXPECT_EQ(Zip("C:\\two", "-r", "C:\\other.zip"), 0);
  EXPECT_EQ(LeftOvers(), 1);
  EXPECT_EQ(first.Finish(result), 0);
  EXPECT_EQ(Names(), "one/\none/a.txt\n");
}

TEST_F(ArchiveLeftTest, FilesOfOthersThatAreNamedAlikeStay) {
  disk.Put("C:\\log\\a.txt", "a");
  const char* names[] = {".notes.1.part", ".zip.part", ".a.zip.x.part", ".a.zip.1.part3",
                         "a.zip.1.part"};
  for (const char* name : names) disk.Put(std::string("C:\\") + name, "somebody's text");
  disk.Put("C:\\.a.zip.part", "PK");
  disk.MakeFolders("C:\\.folder.1.part");
  fs::create_symlink("log/a.txt", disk.Native("C:\\.link.1.part"));
  EXPECT_EQ(Zip("C:\\log"), 0);
  for (const char* name : names) EXPECT_TRUE(disk.Has(std::string("C:\\") + name)) << name;
  EXPECT_TRUE(disk.Has("C:\\.a.zip.part"));
  EXPECT_TRUE(disk.Has("C:\\.folder.1.part"));
  EXPECT_TRUE(disk.Has("C:\\.link.1.part"));
  EXPECT_TRUE(disk.Has("C:\\log\\a.txt"));
}

}  // namespace
}  // namespace logbook::test
