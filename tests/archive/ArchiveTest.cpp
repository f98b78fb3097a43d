// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/Archive.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "support/Errors.h"
#include "support/RunProgram.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::HasSubstr;

// Lists a zip with Python's reader, one entry a line: name, size, time, whether it is UTF-8.
constexpr const char* kLister =
    "import sys, zipfile\n"
    "z = zipfile.ZipFile(sys.argv[1])\n"
    "assert z.testzip() is None\n"
    "for i in z.infolist():\n"
    "    print(i.filename, i.file_size, '%04d-%02d-%02d %02d:%02d:%02d' % i.date_time,\n"
    "          'deflated' if i.compress_type == 8 else 'stored', 'utf8' if i.flag_bits & 0x800 "
    "else 'ascii')\n";

class ArchiveTest : public testing::Test {
 protected:
  ArchiveTest() {
    setenv("TZ", "UTC", 1);
    disk.Put("C:\\lister.py", kLister);
  }

  std::int16_t Zip(const std::string& source, const std::string& options = "-a -r",
                   const std::string& zip = "C:\\out.zip") {
    result.assign(kZipResultBuffer, '\0');
    return arZip(disk, 0, zip, source, options, result);
  }
  std::string List(const std::string& zip = "C:\\out.zip") {
    const ProgramResult listed = RunProgram("python3 " + Quoted(disk.Native("C:\\lister.py")) +
                                            " " + Quoted(disk.Native(zip)));
    EXPECT_EQ(listed.status, 0) << listed.output;
    return listed.output;
  }
  std::string Names(const std::string& zip = "C:\\out.zip") {
    const ProgramResult listed = RunProgram("unzip -Z1 " + Quoted(disk.Native(zip)));
    return listed.output;
  }
  void SetTime(const std::string& path, std::time_t seconds) {
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, disk.Native(path).c_str(), times, 0), 0);
  }
  // A folder with what does not deflate, so that it needs its room.
  void PutNoise(const std::string& folder, int bytes) {
    const std::string native = Quoted(disk.Native(folder));
    ASSERT_EQ(RunProgram("mkdir " + native + " && head -c " + std::to_string(bytes) +
                         " /dev/urandom > " + native + "/b.bin")
                  .status,
              0);
  }
  // Names of C:\ that begin with a point: working files that were left.
  int LeftOvers() {
    int count = 0;
    for (const auto& entry : fs::directory_iterator(disk.Native("C:")))
      count += entry.path().filename().string().starts_with('.') ? 1 : 0;
    return count;
  }

  TestMachine disk;
  std::string result;
};

TEST_F(ArchiveTest, APutFolderStandsInTheZipUnderItsOwnName) {
  disk.Put("C:\\maintain\\26111500\\logfile.ini", "[LogFile]\r\n");
  EXPECT_EQ(Zip("C:\\maintain\\26111500"), 0);
  EXPECT_EQ(Names(), "26111500/\n26111500/logfile.ini\n");
}

TEST_F(ArchiveTest, TheOptionsAsTheyAreGivenInUpperLevelCallsMayEndInNul) {
  disk.Put("C:\\l\\a.txt", "a");
  const std::string options("-a -r\0rest", 10);
  EXPECT_EQ(Zip("C:\\l", options), 0);
  EXPECT_EQ(Names(), "l/\nl/a.txt\n");
}

TEST_F(ArchiveTest, AFolderTreeKeepsItsEmptyFolders) {
  disk.Put("C:\\log\\sub\\deep\\x.txt", "x");
  disk.MakeFolders("C:\\log\\empty\\inner");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Names(),
            "log/\nlog/empty/\nlog/empty/inner/\nlog/sub/\nlog/sub/deep/\nlog/sub/deep/x.txt\n");
}

TEST_F(ArchiveTest, WithoutRecursionOnlyTheFoldersOwnFilesAreTaken) {
  disk.Put("C:\\log\\sub\\x.txt", "x");
  disk.Put("C:\\log\\y.txt", "y");
  EXPECT_EQ(Zip("C:\\log", "-a"), 0);
  EXPECT_EQ(Names(), "log/\nlog/y.txt\n");
}

TEST_F(ArchiveTest, AddingKeepsWhatTheFileHeld) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\two\\b.txt", "b");
  EXPECT_EQ(Zip("C:\\one"), 0);
  EXPECT_EQ(Zip("C:\\two"), 0);
  EXPECT_EQ(Names(), "one/\none/a.txt\ntwo/\ntwo/b.txt\n");
}

TEST_F(ArchiveTest, AddingAFolderAgainReplacesItsEntriesAndKeepsTheOthers) {
  disk.Put("C:\\one\\a.txt", "old text that is longer than the new one");
  disk.Put("C:\\one\\keep.txt", "keep");
  disk.Put("C:\\two\\b.txt", "bbb");
  EXPECT_EQ(Zip("C:\\one"), 0);
  EXPECT_EQ(Zip("C:\\two"), 0);
  disk.Put("C:\\one\\a.txt", "new");
  EXPECT_EQ(Zip("C:\\one"), 0);
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  EXPECT_EQ(RunProgram("unzip -p " + zip + " one/a.txt").output, "new");
  EXPECT_EQ(RunProgram("unzip -p " + zip + " one/keep.txt").output, "keep");
  EXPECT_EQ(RunProgram("unzip -p " + zip + " two/b.txt").output, "bbb");
  EXPECT_EQ(RunProgram("unzip -t " + zip).status, 0);
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, WithoutAddingTheFileStartsAnew) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\two\\b.txt", "b");
  EXPECT_EQ(Zip("C:\\one", "-r"), 0);
  EXPECT_EQ(Zip("C:\\two", "-r"), 0);
  EXPECT_EQ(Names(), "two/\ntwo/b.txt\n");
}

TEST_F(ArchiveTest, FilesAreDeflatedAndComeBackWhole) {
  const std::string text(100000, 'x');
  disk.Put("C:\\log\\big.txt", text);
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_LT(fs::file_size(disk.Native("C:\\out.zip")), 1000u);
  EXPECT_THAT(List(), HasSubstr("log/big.txt 100000"));
  EXPECT_THAT(List(), HasSubstr("deflated"));
  EXPECT_EQ(RunProgram("unzip -p " + Quoted(disk.Native("C:\\out.zip"))).output, text);
}

TEST_F(ArchiveTest, AFileWithoutABytesIsKept) {
  disk.Put("C:\\log\\nothing.txt", "");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_THAT(List(), HasSubstr("log/nothing.txt 0"));
}

TEST_F(ArchiveTest, NamesBeyondAsciiAreFlaggedAsUtf8) {
  disk.Put("C:\\log\\Grüße 測定.txt", "a");
  disk.Put("C:\\log\\plain.txt", "a");
  EXPECT_EQ(Zip("C:\\log"), 0);
  const std::string list = List();
  EXPECT_THAT(list, HasSubstr("log/Grüße 測定.txt 1 "));
  EXPECT_THAT(list, HasSubstr("deflated utf8\n"));
  EXPECT_THAT(list, HasSubstr("ascii\n"));
}

TEST_F(ArchiveTest, NamesThatAreNoUtf8AreReadInTheCodePage) {
  disk.MakeFolders("C:\\log");
  std::ofstream(disk.Native("C:\\log\\") + "gr\xFC\xDF" + "e.txt") << "a";
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_THAT(List(), HasSubstr("log/grüße.txt 1 "));
}

TEST_F(ArchiveTest, HalfASurrogatePairIsNoUtf8EitherAndReadersDoNotStumble) {
  disk.MakeFolders("C:\\log");
  std::ofstream(disk.Native("C:\\log\\") + "\xED\xA0\x80.txt") << "a";
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_THAT(List(), HasSubstr(".txt 1 "));
}

TEST_F(ArchiveTest, TwoNamesOfTheDiskThatAreOneInTheArchiveDropNeitherFile) {
  disk.Put("C:\\log\\ü.txt", "first");
  std::ofstream(disk.Native("C:\\log\\") + "\xFC.txt") << "second";
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_THAT(List(), HasSubstr("log/ü.txt 5 "));
  EXPECT_THAT(List(), HasSubstr("log/ü.txt~ 6 "));
}

TEST_F(ArchiveTest, ATimeBeyondThirtyTwoBitsIsKept) {
  disk.Put("C:\\log\\a.txt", "a");
  SetTime("C:\\log\\a.txt", 2540592000);  // 2050-07-05
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_THAT(List(), HasSubstr("log/a.txt 1 2050-07-05 00:00:00"));
  RunProgram("cd " + Quoted(disk.Native("C:\\")) + " && rm -r log && unzip out.zip");
  struct stat status {};
  ASSERT_EQ(stat(disk.Native("C:\\log\\a.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtime, 2540592000);
}

TEST_F(ArchiveTest, DatesAndTimesAreKept) {
  disk.Put("C:\\log\\sub\\a.txt", "a");
  SetTime("C:\\log\\sub\\a.txt", 1794719399);  // 2026-11-15 05:09:59
  SetTime("C:\\log\\sub", 1794719398);
  EXPECT_EQ(Zip("C:\\log"), 0);
  // Two seconds are the grain of the plain stamp.
  EXPECT_THAT(List(), HasSubstr("log/sub/a.txt 1 2026-11-15 05:09:58"));
  EXPECT_THAT(List(), HasSubstr("log/sub/ 0 2026-11-15 05:09:58"));
  disk.MakeFolders("C:\\back");
  RunProgram("unzip -d " + Quoted(disk.Native("C:\\back")) + " " +
             Quoted(disk.Native("C:\\out.zip")));
  struct stat status {};
  ASSERT_EQ(stat(disk.Native("C:\\back\\log\\sub\\a.txt").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtime, 1794719399);
  ASSERT_EQ(stat(disk.Native("C:\\back\\log\\sub").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtime, 1794719398);
}

TEST_F(ArchiveTest, EveryZipProgramOpensIt) {
  disk.Put("C:\\log\\a.txt", std::string(70000, 'a') + "end");
  disk.MakeFolders("C:\\log\\empty");
  disk.Put("C:\\log\\é.txt", "b");
  disk.Put("C:\\second\\a.txt", "c");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Zip("C:\\second"), 0);
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  EXPECT_EQ(RunProgram("unzip -t " + zip).status, 0);
  EXPECT_EQ(RunProgram("zip -T " + zip).status, 0);
  EXPECT_EQ(RunProgram("python3 -m zipfile -t " + zip).status, 0);
  if (!HasProgram("7zz") && !HasProgram("7z")) GTEST_SKIP() << "7z is not installed";
  const ProgramResult judged = RunProgram((HasProgram("7zz") ? "7zz t " : "7z t ") + zip);
  EXPECT_EQ(judged.status, 0) << judged.output;
  EXPECT_THAT(judged.output, HasSubstr("Everything is Ok"));
  EXPECT_THAT(judged.output, testing::Not(HasSubstr("Warning")));
}

TEST_F(ArchiveTest, AMissingSourceIsAFailureAndMakesNoFile) {
  EXPECT_EQ(Zip("C:\\nothing"), static_cast<int>(ZipResult::kSourceMissing));
  EXPECT_THAT(result, HasSubstr("C:\\nothing"));
  EXPECT_EQ(result.size(), kZipResultBuffer);
  EXPECT_FALSE(disk.Has("C:\\out.zip"));
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, AFailureLeavesAnOlderFileAsItWas) {
  disk.Put("C:\\one\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one"), 0);
  const std::string before = disk.Get("C:\\out.zip");
  EXPECT_NE(Zip("C:\\nothing", "-r"), 0);
  EXPECT_EQ(disk.Get("C:\\out.zip"), before);
}

TEST_F(ArchiveTest, AFileThatIsNoZipIsNotAddedTo) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\out.zip", "no zip at all, but somebody's text");
  EXPECT_EQ(Zip("C:\\one"), static_cast<int>(ZipResult::kNoZipFile));
  EXPECT_EQ(disk.Get("C:\\out.zip"), "no zip at all, but somebody's text");
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, AReadOnlyFileIsNeitherAddedToNorReplaced) {
  disk.Put("C:\\one\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one"), 0);
  chmod(disk.Native("C:\\out.zip").c_str(), 0444);
  const std::string before = disk.Get("C:\\out.zip");
  EXPECT_EQ(Zip("C:\\one", "-a -r"), static_cast<int>(ZipResult::kCannotWrite));
  EXPECT_EQ(Zip("C:\\one", "-r"), static_cast<int>(ZipResult::kCannotWrite));
  EXPECT_EQ(disk.Get("C:\\out.zip"), before);
}

TEST_F(ArchiveTest, AFileThatThisUserMayNotWriteIsNeitherAddedToNorReplaced) {
  disk.Put("C:\\one\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one"), 0);
  const std::string before = disk.Get("C:\\out.zip");
  RunProgram("chmod 0755 " + Quoted(disk.home()) + " && chmod 0777 " + Quoted(disk.Native("C:\\")) +
             " && chmod 0444 " + Quoted(disk.Native("C:\\out.zip")));
  if (geteuid() == 0) chmod(disk.Native("C:\\out.zip").c_str(), 0644);  // another user's
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(Zip("C:\\one", "-a -r"), static_cast<int>(ZipResult::kCannotWrite));
    EXPECT_EQ(Zip("C:\\one", "-r"), static_cast<int>(ZipResult::kCannotWrite));
  }
  EXPECT_EQ(disk.Get("C:\\out.zip"), before);
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, AFileOrFolderThatThisUserMayNotReadIsAFailure) {
  disk.Put("C:\\file\\a.txt", "a");
  disk.Put("C:\\folder\\sub\\a.txt", "a");
  RunProgram("chmod 0755 " + Quoted(disk.home()) + " && cd " + Quoted(disk.Native("C:\\")) +
             " && chmod 0777 . && chmod 0 file/a.txt folder/sub");
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(Zip("C:\\file"), static_cast<int>(ZipResult::kSourceUnreadable));
    EXPECT_EQ(Zip("C:\\folder"), static_cast<int>(ZipResult::kSourceUnreadable));
  }
  RunProgram("chmod 0755 " + Quoted(disk.Native("C:\\folder\\sub")));
  EXPECT_FALSE(disk.Has("C:\\out.zip"));
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, APrivateFileStaysPrivateWhileItIsAddedToAndAfterwards) {
  disk.Put("C:\\one\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one"), 0);
  chmod(disk.Native("C:\\out.zip").c_str(), 0600);
  disk.Put("C:\\one\\a.txt", "new");  // an entry to replace: the zip file is written as a whole
  EXPECT_EQ(Zip("C:\\one"), 0);
  struct stat status {};
  ASSERT_EQ(stat(disk.Native("C:\\out.zip").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(ArchiveTest, ALinkThatStandsWhereAWorkingFileGoesIsNotWrittenThrough) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\victim.txt", "dear");
  EXPECT_EQ(Zip("C:\\one"), 0);
  for (const char* name : {"C:\\.out.zip.1.part", "C:\\.out.zip.2.part2"})
    fs::create_symlink("victim.txt", disk.Native(name));
  EXPECT_EQ(Zip("C:\\one"), 0);
  EXPECT_EQ(disk.Get("C:\\victim.txt"), "dear");
  EXPECT_EQ(Names(), "one/\none/a.txt\n");
}

TEST_F(ArchiveTest, ANameOfAnyLengthHasAWorkingFile) {
  disk.Put("C:\\one\\a.txt", "a");
  const std::string zip = "C:\\" + std::string(251, 'n') + ".zip";
  EXPECT_EQ(Zip("C:\\one", "-a -r", zip), 0);
  EXPECT_EQ(Zip("C:\\one", "-a -r", zip), 0);
  EXPECT_EQ(Names(zip), "one/\none/a.txt\n");
}

TEST_F(ArchiveTest, LogsAtTheEndOfALongPathAreTakenWhole) {
  std::string path = "C:\\log";
  std::string name = "log/";
  std::string names = name;
  for (int level = 0; level < 12; ++level) {
    path += "\\" + std::string(60, static_cast<char>('a' + level));
    name += std::string(60, static_cast<char>('a' + level)) + "/";
    names += name + "\n";
  }
  disk.Put(path + "\\deep.txt", "deep");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Names(), "log/\n" + names.substr(4) + name + "deep.txt\n");
}

TEST_F(ArchiveTest, AFileInAFolderThatDoesNotExistCannotBeWritten) {
  disk.Put("C:\\one\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one", "-a -r", "C:\\no\\out.zip"), static_cast<int>(ZipResult::kCannotWrite));
}

TEST_F(ArchiveTest, AnUnknownOptionIsRefused) {
  disk.Put("C:\\one\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one", "-x"), static_cast<int>(ZipResult::kBadOptions));
}

TEST_F(ArchiveTest, TheZipFileDoesNotPackItself) {
  disk.Put("C:\\log\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\log", "-a -r", "C:\\log\\out.zip"), 0);
  EXPECT_EQ(Zip("C:\\log", "-a -r", "C:\\log\\out.zip"), 0);
  EXPECT_EQ(Names("C:\\log\\out.zip"), "log/\nlog/a.txt\n");
}

TEST_F(ArchiveTest, WhatAKilledWriterHasLeftInALogIsNotPacked) {
  disk.Put("C:\\log\\a.txt", "a");
  disk.Put("C:\\log\\.logbook-new~", "half a file");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Names(), "log/\nlog/a.txt\n");
}

TEST_F(ArchiveTest, ALinkToAFileOfTheSameLogIsThatFile) {
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

TEST_F(ArchiveTest, EveryOtherLinkIsLeftOutAndNothingIsSaidOfIt) {
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

TEST_F(ArchiveTest, ALogFolderThatIsALinkIsRead) {
  disk.Put("C:\\elsewhere\\real\\a.txt", "a");
  disk.MakeFolders("C:\\maintain");
  fs::create_directory_symlink("../elsewhere/real", disk.Native("C:\\maintain\\26111500"));
  fs::create_symlink("a.txt", disk.Native("C:\\elsewhere\\real\\same.txt"));
  EXPECT_EQ(Zip("C:\\maintain\\26111500"), 0);
  EXPECT_EQ(Names(), "26111500/\n26111500/a.txt\n26111500/same.txt\n");
}

TEST_F(ArchiveTest, ControlCharactersAndBackslashesInNamesAreUnderscores) {
  const std::string folder = disk.Native("C:\\log");
  disk.Put("C:\\log\\a_b.txt", "plain");
  std::ofstream(folder + "/a\nb.txt") << "line end";
  std::ofstream(folder + "/a\\b.txt") << "backslash";
  std::ofstream(folder + "/\x01\x7F.txt") << "seven bits";
  std::ofstream(folder + "/\xC2\x85.txt") << "eight bits";
  fs::create_directory(folder + "/in\\ner");
  std::ofstream(folder + "/in\\ner/c.txt") << "c";
  EXPECT_EQ(Zip("C:\\log"), 0) << result;
  EXPECT_EQ(Names(),
            "log/\nlog/__.txt\nlog/a_b.txt\nlog/a_b.txt~\nlog/a_b.txt~~\nlog/in_ner/\n"
            "log/in_ner/c.txt\nlog/_.txt\n");
  EXPECT_EQ(RunProgram("unzip -p " + Quoted(disk.Native("C:\\out.zip")) + " log/a_b.txt~~").output,
            "plain");
}

// What a writer that is killed leaves.

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

TEST_F(ArchiveTest, WhatAKilledWriterHasLeftGoesWithTheNextArchiveOfTheFolder) {
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

TEST_F(ArchiveTest, WhatAnotherWriterIsAtWorkOnStays) {
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

TEST_F(ArchiveTest, FilesOfOthersThatAreNamedAlikeStay) {
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

TEST_F(ArchiveTest, ANewFileBearsTheUsersUsualRights) {
  disk.Put("C:\\log\\a.txt", "a");
  const mode_t mask = umask(022);
  EXPECT_EQ(Zip("C:\\log"), 0);
  umask(mask);
  struct stat status {};
  ASSERT_EQ(stat(disk.Native("C:\\out.zip").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0644u);
}

TEST_F(ArchiveTest, TheFileAppearsUnderItsNameOnlyWhenTheRunIsOver) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\two\\b.txt", "b");
  ZipWriter writer(disk);
  result.assign(kZipResultBuffer, '\0');
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\one", "-a -r", result), 0);
  EXPECT_FALSE(disk.Has("C:\\out.zip"));
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\two", "-a -r", result), 0);
  EXPECT_EQ(writer.Finish(result), 0);
  EXPECT_EQ(Names(), "one/\none/a.txt\ntwo/\ntwo/b.txt\n");
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, AFolderPutTwiceInOneRunStandsOnceWithItsNewContents) {
  disk.Put("C:\\one\\a.txt", "old");
  disk.Put("C:\\two\\b.txt", "b");
  disk.Put("C:\\three\\c.txt", "c");
  ZipWriter writer(disk);
  result.assign(kZipResultBuffer, '\0');
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\one", "-a -r", result), 0);
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\two", "-a -r", result), 0);
  disk.Put("C:\\one\\a.txt", "new");
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\one", "-a -r", result), 0);
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\three", "-a -r", result), 0);
  EXPECT_EQ(writer.Finish(result), 0);
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  EXPECT_EQ(RunProgram("unzip -Z1 " + zip + " | sort | uniq -c | awk '{print $1 $2}'").output,
            "1one/\n1one/a.txt\n1three/\n1three/c.txt\n1two/\n1two/b.txt\n");
  EXPECT_EQ(RunProgram("unzip -p " + zip + " one/a.txt").output, "new");
  EXPECT_EQ(RunProgram("unzip -tq " + zip).status, 0);
}

TEST_F(ArchiveTest, MoreEntriesThanSixteenBitsCountAreAllThere) {
  for (const char* name : {"one", "two"}) {
    const std::string folder = disk.Native(std::string("C:\\") + name);
    ASSERT_EQ(RunProgram("mkdir " + Quoted(folder) + " && cd " + Quoted(folder) +
                         " && seq 1 33000 | xargs touch")
                  .status,
              0);
  }
  ZipWriter writer(disk);
  result.assign(kZipResultBuffer, '\0');
  for (const char* name : {"C:\\one", "C:\\two"})
    EXPECT_EQ(writer.arZip(0, "C:\\out.zip", name, "-a -r", result), 0);
  EXPECT_EQ(writer.Finish(result), 0);
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  EXPECT_EQ(RunProgram("unzip -Z1 " + zip + " | wc -l").output, "66002\n");
  EXPECT_EQ(RunProgram("python3 -c 'import sys, zipfile; "
                       "print(len(zipfile.ZipFile(sys.argv[1]).namelist()))' " +
                       zip)
                .output,
            "66002\n");
}

TEST_F(ArchiveTest, AFailedCallTakesNothingFromTheEarlierOnesOfTheRun) {
  disk.Put("C:\\one\\a.txt", "a");
  disk.Put("C:\\two\\b.txt", "b");
  RunProgram("chmod 0755 " + Quoted(disk.home()) + " && cd " + Quoted(disk.Native("C:\\")) +
             " && chmod 0777 . && chmod 0 two/b.txt");
  {
    const AsOrdinaryUser user;
    ZipWriter writer(disk);
    result.assign(kZipResultBuffer, '\0');
    EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\one", "-a -r", result), 0);
    EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\two", "-a -r", result),
              static_cast<int>(ZipResult::kSourceUnreadable));
  }
  EXPECT_EQ(Names(), "one/\none/a.txt\n");
  EXPECT_EQ(RunProgram("unzip -t " + Quoted(disk.Native("C:\\out.zip"))).status, 0);
}

TEST_F(ArchiveTest, ADiskThatFillsUpInTheSecondCallLeavesTheFirstLog) {
  disk.Put("C:\\one\\a.txt", "a");
  PutNoise("C:\\two", 3000000);
  result.assign(kZipResultBuffer, '\0');
  ZipWriter writer(disk);
  EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\one", "-a -r", result), 0);
  {
    const SmallFilesOnly limit(1000000);
    EXPECT_NE(writer.arZip(0, "C:\\out.zip", "C:\\two", "-a -r", result), 0);
  }
  EXPECT_EQ(writer.Finish(result), 0);
  EXPECT_EQ(Names(), "one/\none/a.txt\n");
  EXPECT_EQ(RunProgram("unzip -t " + Quoted(disk.Native("C:\\out.zip"))).status, 0);
}

TEST_F(ArchiveTest, AnOlderFileThatHasNoRoomForItsCopyStaysAndTheReasonIsTold) {
  PutNoise("C:\\one", 400000);
  disk.Put("C:\\two\\a.txt", "a");
  EXPECT_EQ(Zip("C:\\one"), 0);
  const std::string before = disk.Get("C:\\out.zip");
  {
    const SmallFilesOnly limit(300000);  // within the second piece that is copied
    EXPECT_EQ(Zip("C:\\two"), static_cast<int>(ZipResult::kCannotWrite));
  }
  EXPECT_THAT(result, HasSubstr(std::strerror(EFBIG)));
  EXPECT_EQ(disk.Get("C:\\out.zip"), before);
  EXPECT_EQ(LeftOvers(), 0);
}

TEST_F(ArchiveTest, AFileOfOneGigabyteGoesThroughSixtyFourMegabytesOfMemory) {
  disk.MakeFolders("C:\\log");
  ASSERT_EQ(truncate((std::ofstream(disk.Native("C:\\log\\big.bin")),
                      disk.Native("C:\\log\\big.bin").c_str()),
                     1 << 30),
            0);
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  EXPECT_EQ(Zip("C:\\log"), 0);
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 64 * 1024) << "KiB above what was in use";
  EXPECT_THAT(RunProgram("unzip -v " + Quoted(disk.Native("C:\\out.zip"))).output,
              HasSubstr("1073741824"));
}

}  // namespace
}  // namespace logbook::test
