// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "base/NativeFile.h"
#include "support/Errors.h"
#include "support/ProcessFigures.h"
#include "support/Refusals.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using Kind = FolderEntry::Kind;
using testing::ElementsAre;

std::vector<std::string> NamesOf(const std::vector<FolderEntry>& entries) {
  std::vector<std::string> names;
  for (const FolderEntry& entry : entries) names.push_back(entry.name);
  return names;
}

TEST(FilesTest, ADriveIsAFolderOrLinkBelowTheHome) {
  const TestMachine machine;
  const std::string drives = machine.home() + "/drives";
  EXPECT_EQ(NativePath(machine, "C:"), drives + "/c");
  EXPECT_EQ(NativePath(machine, "c:\\"), drives + "/c");
  EXPECT_EQ(NativePath(machine, "C:\\new.txt"), drives + "/c/new.txt");
  EXPECT_EQ(NativePath(machine, "C:new.txt"), drives + "/c/new.txt");
  EXPECT_EQ(NativePath(machine, "Z:\\a\\b"), drives + "/z/a/b");

  fs::create_directory(machine.home() + "/elsewhere");
  fs::create_directory_symlink(machine.home() + "/elsewhere", drives + "/d");
  WriteFile(machine, "D:\\note.txt", "over the link");
  std::ifstream in(machine.home() + "/elsewhere/note.txt");
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "over the link");
}

TEST(FilesTest, ADriveFolderInUpperCaseIsFoundToo) {
  const TestMachine machine;
  fs::create_directory(machine.home() + "/drives/E");
  EXPECT_TRUE(FolderExists(machine, "e:\\"));
  EXPECT_EQ(NativePath(machine, "E:\\x"), machine.home() + "/drives/E/x");
}

TEST(FilesTest, APathWithoutADriveStartsAtTheRoot) {
  const TestMachine machine;
  EXPECT_EQ(NativePath(machine, "\\no such folder\\x"), "/no such folder/x");
  EXPECT_EQ(NativePath(machine, "no such folder\\x"), "/no such folder/x");
  EXPECT_EQ(NativePath(machine, "\\"), "/");
  EXPECT_EQ(NativePath(machine, "1:\\x"), "/1:/x");
  EXPECT_EQ(NativePath(machine, ""), "");
  machine.Put("C:\\a.txt", "a");
  EXPECT_EQ(ReadFile(machine, PathText(machine.home()) + "\\drives\\c\\a.txt"), "a");
}

TEST(FilesTest, SeparatorsOfBothKindsDoubledOrTrailingDoNotMatter) {
  const TestMachine machine;
  machine.Put("C:\\a\\b\\c.txt", "found");
  for (const char* path : {"C:\\a\\b\\c.txt", "C:/a/b/c.txt", "C:\\\\a\\/b//c.txt", "C:a\\b\\c.txt",
                           "C:\\a\\b\\c.txt\\"}) {
    EXPECT_EQ(NativePath(machine, path), machine.Native("C:\\a\\b\\c.txt")) << path;
  }
  EXPECT_TRUE(FolderExists(machine, "C:\\a\\b\\\\"));
}

TEST(FilesTest, EachComponentIsFoundWithoutRegardToCaseBeyondAsciiToo) {
  const TestMachine machine;
  machine.Put("C:\\Quorex\\Été\\Журнал.TXT", "found");
  for (const char* path : {"C:\\QUOREX\\éTé\\ЖУРНАЛ.txt", "c:\\quorex\\ÉTÉ\\журнал.txt",
                           "C:\\Quorex\\Été\\Журнал.TXT"}) {
    EXPECT_EQ(ReadFile(machine, path), "found") << path;
  }
  EXPECT_FALSE(Exists(machine, "C:\\Quorex\\Ete\\Журнал.TXT"));
}

TEST(FilesTest, TheExactNameComesBeforeOneThatDiffersInCase) {
  const TestMachine machine;
  machine.Put("C:\\NOTE.TXT", "upper");
  machine.Put("C:\\note.txt", "lower");
  EXPECT_EQ(ReadFile(machine, "C:\\note.txt"), "lower");
  EXPECT_EQ(ReadFile(machine, "C:\\NOTE.TXT"), "upper");
  EXPECT_EQ(ReadFile(machine, "C:\\Note.txt"), "upper") << "of several the first by its bytes";
}

TEST(FilesTest, AComponentBetweenQuotesIsFoundByItsExactNameAlone) {
  const TestMachine machine;
  machine.Put("C:\\Logs\\alpha\\Note.txt", "another log");
  EXPECT_EQ(ReadFile(machine, "C:\\LOGS\\\"alpha\"\\NOTE.TXT"), "another log");
  EXPECT_EQ(NativePath(machine, "C:\\LOGS\\\"Alpha\"\\NOTE.TXT"),
            machine.Native("C:\\Logs\\Alpha\\NOTE.TXT"));
  const std::string gone = "C:\\logs\\\"Alpha\"\\note.txt";
  EXPECT_FALSE(Exists(machine, gone));
  EXPECT_EQ(StampOf(machine, gone), FileStamp());
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, gone); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { InputFile(machine, gone); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, gone, "x"); }), 76);
  MakeFolder(machine, "C:\\logs\\\"Alpha\"");
  WriteFile(machine, gone, "the log");
  EXPECT_EQ(machine.Get("C:\\Logs\\Alpha\\note.txt"), "the log");
  EXPECT_EQ(machine.Get("C:\\Logs\\alpha\\Note.txt"), "another log");
}

TEST(FilesTest, AQuoteThatIsPartOfANameStays) {
  const TestMachine machine;
  machine.Put("C:\\5\" disk\\a.txt", "a");
  machine.Put("C:\\\"q\"\\b.txt", "b");
  EXPECT_EQ(ReadFile(machine, "C:\\5\" disk\\a.txt"), "a");
  EXPECT_EQ(ReadFile(machine, ExactFolder("C:\\5\" disk") + "a.txt"), "a");
  EXPECT_EQ(ReadFile(machine, ExactFolder("C:\\\"q\"") + "b.txt"), "b");
}

TEST(FilesTest, TheExactFormOfAFolderQuotesItsOwnNameAlone) {
  const std::pair<const char*, const char*> cases[] = {
      {"C:\\a\\b\\", "C:\\a\\\"b\"\\"},
      {"C:\\a\\b", "C:\\a\\\"b\"\\"},
      {"C:/a/b//", "C:/a/\"b\"\\"},
      {"\\a:b", "\\\"a:b\"\\"},
      {"C:b", "C:\"b\"\\"},
      {"b", "\"b\"\\"},
      {"C:\\", "C:\\"},
      {"\\", "\\"},
  };
  for (const auto& [path, exact] : cases) EXPECT_EQ(ExactFolder(path), exact) << path;
}

TEST(FilesTest, ANameIsTakenByWhateverHasIt) {
  const TestMachine machine;
  machine.Put("C:\\f\\file", "");
  machine.MakeFolders("C:\\f\\folder");
  fs::create_symlink("nowhere", machine.Native("C:\\f\\link"));
  ASSERT_EQ(mkfifo(machine.Native("C:\\f\\pipe").c_str(), 0600), 0);
  ASSERT_EQ(mknod(machine.Native("C:\\f\\socket").c_str(), S_IFSOCK | 0600, 0), 0);
  for (const char* name : {"file", "folder", "link", "pipe", "socket", "LINK"})
    EXPECT_TRUE(NameIsTaken(machine, std::string("C:\\f\\") + name)) << name;
  for (const char* path : {"C:\\f\\none", "C:\\g\\file", "C:\\f\\\"LINK\"", ""})
    EXPECT_FALSE(NameIsTaken(machine, path)) << path;
}

TEST(FilesTest, AComponentThatDoesNotExistStandsAsItIsGiven) {
  const TestMachine machine;
  machine.MakeFolders("C:\\Logs");
  EXPECT_EQ(NativePath(machine, "C:\\LOGS\\New Log\\A.txt"),
            machine.Native("C:\\Logs\\New Log\\A.txt"));
}

TEST(FilesTest, ANativePathBecomesAPathTextWithoutADrive) {
  EXPECT_EQ(PathText("/srv/logs/a.txt"), "\\srv\\logs\\a.txt");
  EXPECT_EQ(PathText("/srv//logs/../x"), "\\srv\\x");
  const TestMachine machine;
  const std::string text = PathText("a.txt");
  EXPECT_EQ(NativePath(machine, text), (fs::current_path() / "a.txt").string());
}

TEST(FilesTest, ATypedPathWithADriveOrABackslashIsAPathTextAndAnyOtherNative) {
  for (const char* text : {"C:\\a", "c:", "C:a/b", "\\srv\\a", "a\\b"})
    EXPECT_EQ(TypedPathText(text), text);
  for (const char* native : {"/srv/a", "a", "./a/../b", "1:", "1:/x"})
    EXPECT_EQ(TypedPathText(native), PathText(native));
}

TEST(FilesTest, ExistenceIsToldForFilesAndFolders) {
  const TestMachine machine;
  machine.Put("C:\\f\\a.txt", "");
  EXPECT_TRUE(Exists(machine, "C:\\f\\a.txt"));
  EXPECT_FALSE(FolderExists(machine, "C:\\f\\a.txt"));
  EXPECT_TRUE(Exists(machine, "C:\\f"));
  EXPECT_TRUE(FolderExists(machine, "C:\\f\\"));
  for (const char* path : {"", "C:\\g", "C:\\f\\b.txt", "C:\\f\\a.txt\\b", "Q:\\"}) {
    EXPECT_FALSE(Exists(machine, path)) << path;
    EXPECT_FALSE(FolderExists(machine, path)) << path;
  }
}

TEST(FilesTest, AFolderIsScannedInAscendingOrderWithoutRegardToCase) {
  const TestMachine machine;
  for (const char* name : {"b", "A", "a1", "Z", "_", "26111502", "26111501", "é", "É2", "a", "."}) {
    if (name != std::string(".")) machine.Put(std::string("C:\\s\\") + name, "");
  }
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\s")),
              ElementsAre("26111501", "26111502", "A", "a", "a1", "b", "Z", "_", "é", "É2"));
}

TEST(FilesTest, AScanGoesByTheCodeUnitsOfUtf16) {
  const TestMachine machine;
  // Beyond the basic plane a character is two units, which stand before U+E000 and what follows.
  for (const char* name : {"\xEF\xBC\xA1", "\xF0\x9F\x98\x80", "\xED\x9F\xBB"})
    machine.Put(std::string("C:\\s\\") + name, "");
  EXPECT_THAT(NamesOf(ScanFolder(machine, "C:\\s")),
              ElementsAre("\xED\x9F\xBB", "\xF0\x9F\x98\x80", "\xEF\xBC\xA1"));
}

TEST(FilesTest, AScanTellsFilesFoldersAndWhatCannotBeRead) {
  const TestMachine machine;
  machine.Put("C:\\s\\file", "");
  machine.MakeFolders("C:\\s\\folder");
  fs::create_symlink("nowhere", machine.Native("C:\\s\\broken"));
  fs::create_symlink("folder", machine.Native("C:\\s\\link"));
  const auto entries = ScanFolder(machine, "C:\\S\\");
  ASSERT_THAT(NamesOf(entries), ElementsAre("broken", "file", "folder", "link"));
  EXPECT_EQ(entries[0].kind, Kind::kUnreadable);
  EXPECT_EQ(entries[1].kind, Kind::kFile);
  EXPECT_EQ(entries[2].kind, Kind::kFolder);
  EXPECT_EQ(entries[3].kind, Kind::kFolder);
}

TEST(FilesTest, AnEntryThatNoPathTextCanNameIsUnreadable) {
  const TestMachine machine;
  machine.MakeFolders("C:\\logs");
  fs::create_directory(machine.home() + "/drives/c/logs/..\\programs");
  const auto entries = ScanFolder(machine, "C:\\logs");
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].name, "..\\programs");
  EXPECT_EQ(entries[0].kind, Kind::kUnreadable);
}

TEST(FilesTest, ScanningWhatIsNoFolderIsError76) {
  const TestMachine machine;
  machine.Put("C:\\file", "");
  for (const char* path : {"C:\\none", "C:\\none\\deeper", "C:\\file", "Q:\\", ""}) {
    EXPECT_EQ(NumberRaisedBy([&] { ScanFolder(machine, path); }), 76) << path;
  }
}

TEST(FilesTest, TheStampOfAFileChangesWithTheFileAndOnlyThen) {
  const TestMachine machine;
  EXPECT_EQ(StampOf(machine, "C:\\a.txt"), FileStamp());
  EXPECT_EQ(StampOf(machine, ""), FileStamp());
  WriteFile(machine, "C:\\a.txt", "one");
  const FileStamp first = StampOf(machine, "C:\\a.txt");
  EXPECT_EQ(first.size, 3u);
  EXPECT_EQ(StampOf(machine, "C:\\A.TXT"), first);
  WriteFile(machine, "C:\\a.txt", "two");
  EXPECT_NE(StampOf(machine, "C:\\a.txt"), first);
}

TEST(FilesTest, AFileIsReadWithAllItsBytes) {
  const TestMachine machine;
  std::string bytes(100000, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7);
  machine.Put("C:\\a.bin", bytes);
  EXPECT_EQ(ReadFile(machine, "C:\\a.bin"), bytes);
  machine.Put("C:\\empty", "");
  EXPECT_EQ(ReadFile(machine, "C:\\empty"), "");
}

TEST(FilesTest, AFileOfMoreBytesThanTheLimitIsError7) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "12345");
  EXPECT_EQ(ReadFile(machine, "C:\\a.txt", 5), "12345");
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\a.txt", 4); }), 7);
  // Of a size that is told only by reading.
  fs::create_symlink("/proc/self/status", machine.Native("C:\\grows.txt"));
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\grows.txt", 4); }), 7);
}

TEST(FilesTest, ReadingRaises53ForAFile76ForItsFolder75ForAFolderOrNoName) {
  const TestMachine machine;
  machine.Put("C:\\f\\a.txt", "");
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\f\\b.txt"); }), 53);
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\g\\b.txt"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "Q:\\b.txt"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\f\\a.txt\\b.txt"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\f"); }), 75);
  EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, ""); }), 75);
}

TEST(FilesTest, APipeOrDeviceIsNoFileAndNobodyWaitsForIt) {
  const TestMachine machine;
  ASSERT_EQ(mkfifo((machine.home() + "/drives/c/errlog.txt").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", machine.home() + "/drives/c/acqlog.txt");
  for (const char* path : {"C:\\errlog.txt", "C:\\ERRLOG.TXT", "C:\\acqlog.txt"}) {
    EXPECT_FALSE(Exists(machine, path)) << path;
    EXPECT_EQ(StampOf(machine, path), FileStamp()) << path;
    EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, path); }), 75) << path;
    EXPECT_EQ(NumberRaisedBy([&] { InputFile(machine, path); }), 75) << path;
    EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, path, "x"); }), 75) << path;
    EXPECT_EQ(NumberRaisedBy([&] { CopyFile(machine, path, "C:\\copy"); }), 75) << path;
  }
}

TEST(FilesTest, BelowAFolderInAnotherCaseANameIsStillFoundExactlyFirst) {
  const TestMachine machine;
  machine.Put("C:\\folder\\A.txt", "capital");
  machine.Put("C:\\folder\\a.txt", "small");
  EXPECT_EQ(ReadFile(machine, "C:\\FOLDER\\a.txt"), "small");
  EXPECT_EQ(ReadFile(machine, "C:\\FOLDER\\A.txt"), "capital");
  EXPECT_EQ(ReadFile(machine, "C:\\FOLDER\\A.TXT"), "capital");
}

TEST(FilesTest, WhatTheSystemRefusesIsError70) {
  const TestMachine machine;
  machine.Put("C:\\f\\a.txt", "secret");
  machine.MakeFolders("C:\\f\\folder");
  machine.Put("C:\\f\\full\\b.txt", "kept");
  machine.MakeFolders("C:\\f\\closed");
  chmod(machine.Native("C:\\f\\closed").c_str(), 0);
  chmod(machine.home().c_str(), 0755);
  chmod(machine.Native("C:\\f\\a.txt").c_str(), 0200);
  chmod(machine.Native("C:\\f").c_str(), 0555);
  {
    const AsOrdinaryUser user;
    EXPECT_EQ(NumberRaisedBy([&] { ReadFile(machine, "C:\\f\\a.txt"); }), 70);
    EXPECT_EQ(NumberRaisedBy([&] { InputFile(machine, "C:\\f\\a.txt"); }), 70);
    EXPECT_EQ(NumberRaisedBy([&] { WriteFile(machine, "C:\\f\\b.txt", "x"); }), 70);
    EXPECT_EQ(NumberRaisedBy([&] { MakeFolder(machine, "C:\\f\\new"); }), 70);
    for (const char* folder : {"C:\\f\\folder", "C:\\f\\full"})
      EXPECT_EQ(NumberRaisedBy([&] { RemoveFolder(machine, folder); }), 70) << folder;
    EXPECT_EQ(NumberRaisedBy([&] { DeleteFile(machine, "C:\\f\\a.txt"); }), 70);
    EXPECT_EQ(NumberRaisedBy([&] { DeleteFilesIn(machine, "C:\\f"); }), 70);
    EXPECT_EQ(NumberRaisedBy([&] { ScanFolder(machine, "C:\\f\\closed"); }), 70);
    EXPECT_EQ(NumberRaisedBy([&] { FirstFoldersIn(machine, "C:\\f\\closed", 5); }), 70);
  }
  chmod(machine.Native("C:\\f").c_str(), 0755);
  EXPECT_EQ(machine.Get("C:\\f\\a.txt"), "secret");
}

TEST(FilesTest, OneFolderIsMadeAndOnlyOneLevel) {
  const TestMachine machine;
  MakeFolder(machine, "C:\\logs");
  EXPECT_TRUE(FolderExists(machine, "C:\\logs"));
  MakeFolder(machine, "C:\\LOGS\\a\\");
  EXPECT_TRUE(FolderExists(machine, "C:\\logs\\a"));
  EXPECT_EQ(NumberRaisedBy([&] { MakeFolder(machine, "C:\\LOGS"); }), 75);
  machine.Put("C:\\file", "");
  EXPECT_EQ(NumberRaisedBy([&] { MakeFolder(machine, "C:\\FILE"); }), 75);
  EXPECT_EQ(NumberRaisedBy([&] { MakeFolder(machine, "C:\\x\\y"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { MakeFolder(machine, "C:\\file\\y"); }), 76);
  EXPECT_EQ(NumberRaisedBy([&] { MakeFolder(machine, ""); }), 76);
  EXPECT_FALSE(Exists(machine, "C:\\x"));
}

TEST(FilesTest, ANativePathBelowADriveHasAPathTextWithThatDrive) {
  const TestMachine machine;
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/c"), "C:\\");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/c/a/b"), "C:\\a\\b");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/cellar/b"),
            PathText(machine.home() + "/drives/cellar/b"));
  EXPECT_EQ(DrivePathText(machine, "/usr/bin"), "\\usr\\bin");
  fs::remove_all(machine.home() + "/drives");
  EXPECT_EQ(DrivePathText(machine, "/usr/bin"), "\\usr\\bin");
}

TEST(FilesTest, ADriveIsKnownInCapitalsAndWhereItIsNotYetThere) {
  const TestMachine machine;
  fs::create_directories(machine.home() + "/drives/F/a");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/F/a"), "F:\\a");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/q/a"), "Q:\\a");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/z/a"), "Z:\\a");
  fs::rename(machine.home() + "/drives", machine.home() + "/Drives");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/Drives/F/a"), "F:\\a");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/Drives/q/a"), "Q:\\a");
}

TEST(FilesTest, ANativePathBelowTheTargetOfADriveThatIsALinkHasThatDrive) {
  const TestMachine machine;
  fs::create_directories(machine.home() + "/disk/of the workstation");
  fs::create_directory_symlink("../disk", machine.home() + "/drives/d");
  fs::create_directory_symlink("../missing", machine.home() + "/drives/e");
  fs::create_directories(machine.home() + "/second");
  fs::create_directory_symlink("../second", machine.home() + "/drives/k");
  const std::string second = fs::canonical(machine.home() + "/second").string();
  EXPECT_EQ(DrivePathText(machine, second + "/a"), "K:\\a");
  const std::string disk = fs::canonical(machine.home() + "/disk").string();
  EXPECT_EQ(DrivePathText(machine, disk + "/of the workstation"), "D:\\of the workstation");
  EXPECT_EQ(DrivePathText(machine, disk), "D:\\");
  EXPECT_EQ(DrivePathText(machine, machine.home() + "/drives/d/x"), "D:\\x");
  EXPECT_EQ(DrivePathText(machine, disk + "ette/x"), PathText(disk + "ette/x"));
}

TEST(FilesTest, ACopyHasTheSameBytesAndReplacesWhatWasThere) {
  const TestMachine machine;
  machine.Put("C:\\a.txt", "text\r\n");
  machine.Put("C:\\f\\b.txt", "older and longer");
  CopyFile(machine, "C:\\A.TXT", "C:\\f\\B.txt");
  EXPECT_EQ(machine.Get("C:\\f\\b.txt"), "text\r\n");
  EXPECT_EQ(NumberRaisedBy([&] { CopyFile(machine, "C:\\none", "C:\\c.txt"); }), 53);
  EXPECT_EQ(NumberRaisedBy([&] { CopyFile(machine, "C:\\a.txt", "C:\\g\\c.txt"); }), 76);
  EXPECT_FALSE(machine.Has("C:\\c.txt"));
}

TEST(FilesTest, AFileOfAQuarterGigabyteIsCopiedThroughBoundedMemory) {
  const TestMachine machine;
  machine.Put("C:\\big.bin", "x");
  fs::resize_file(machine.Native("C:\\big.bin"), 256 << 20);
  const long before = PeakMemory();
  CopyFile(machine, "C:\\big.bin", "C:\\copy.bin");
  EXPECT_EQ(fs::file_size(machine.Native("C:\\copy.bin")), std::uintmax_t{256} << 20);
  EXPECT_LT(PeakMemory() - before, 64 * 1024) << "KiB above what was in use";
}

}  // namespace
}  // namespace logbook::test
