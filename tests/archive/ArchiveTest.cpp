// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/Archive.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "Archiving.h"
#include "FailingRename.h"
#include "LargeArchive.h"
#include "support/Errors.h"
#include "support/Refusals.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using testing::HasSubstr;

using ArchiveTest = LargeArchive;

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

TEST_F(ArchiveTest, AnEntryThatStandsInTheArchiveTwiceIsReplacedAsOne) {
  disk.Put("C:\\one\\a.txt", "new");
  disk.Put("C:\\make.py",
           "import sys, warnings, zipfile\n"
           "warnings.simplefilter('ignore')\n"
           "z = zipfile.ZipFile(sys.argv[1], 'w')\n"
           "z.writestr('one/a.txt', 'old')\n"
           "z.writestr('one/a.txt', 'older')\n"
           "z.writestr('two/a.txt', 'kept')\n"
           "z.close()\n");
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  ASSERT_EQ(RunProgram("python3 " + Quoted(disk.Native("C:\\make.py")) + " " + zip).status, 0);
  EXPECT_EQ(Zip("C:\\one"), 0);
  EXPECT_EQ(Names(), "one/a.txt\ntwo/a.txt\none/\n");
  EXPECT_EQ(RunProgram("unzip -p " + zip + " one/a.txt").output, "new");
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
  for (const char* number : {"", "4711", "4711-3"})
    disk.Put(std::string("C:\\log\\.logbook-new~") + number, "half a file");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Names(), "log/\nlog/a.txt\n");
}

TEST_F(ArchiveTest, WhatOnlyLooksLikeAKilledWritersFileIsPacked) {
  disk.Put("C:\\log\\.logbook-new~\\a.txt", "a");
  disk.Put("C:\\log\\.logbook-new~1\\b.txt", "b");
  disk.Put("C:\\log\\.logbook-new~old", "c");
  disk.Put("C:\\log\\.logbook-new~1-", "d");
  EXPECT_EQ(Zip("C:\\log"), 0);
  EXPECT_EQ(Names(),
            "log/\nlog/.logbook-new~/\nlog/.logbook-new~/a.txt\nlog/.logbook-new~1/\n"
            "log/.logbook-new~1/b.txt\nlog/.logbook-new~1-\nlog/.logbook-new~old\n");
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

TEST_F(ArchiveTest, EveryFolderOfARunComesBackWhole) {
  ZipWriter writer(disk);
  result.assign(kZipResultBuffer, '\0');
  for (const std::string name : {"one", "two", "three"}) {
    disk.Put("C:\\" + name + "\\a.txt", "text of " + name);
    EXPECT_EQ(writer.arZip(0, "C:\\out.zip", "C:\\" + name, "-a -r", result), 0);
  }
  EXPECT_EQ(writer.Finish(result), 0);
  const std::string zip = Quoted(disk.Native("C:\\out.zip"));
  for (const std::string name : {"one", "two", "three"}) {
    EXPECT_EQ(RunProgram("unzip -p " + zip + " " + name + "/a.txt").output, "text of " + name);
  }
  EXPECT_EQ(RunProgram("python3 -m zipfile -t " + zip).status, 0);
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

TEST_F(ArchiveTest, TheEntriesOfTwoFoldersAreAllThere) {
  ExpectAllEntriesOfTwoFolders(400);
}

TEST_F(ArchiveTest, ALargeFileGoesThroughLittleMemory) {
  ExpectBoundedMemory(96 << 20, 16 << 20);
}

TEST_F(ArchiveTest, AZipFileThatCannotGetItsNameIsTheFailureOfASingleCall) {
  disk.Put("C:\\one\\a.txt", "a");
  {
    const FailingRename failing;
    EXPECT_EQ(Zip("C:\\one"), static_cast<int>(ZipResult::kCannotWrite));
  }
  EXPECT_THAT(result, HasSubstr(std::strerror(EIO)));
  EXPECT_FALSE(disk.Has("C:\\out.zip"));
  EXPECT_EQ(LeftOvers(), 0);
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

}  // namespace
}  // namespace logbook::test
