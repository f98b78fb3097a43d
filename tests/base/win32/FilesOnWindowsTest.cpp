// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the disk, the registry and the rights of Windows have of their own.

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "base/FileLock.h"
#include "base/Files.h"
#include "base/FilesBelow.h"
#include "base/NativeDisk.h"
#include "base/NativeFile.h"
#include "base/PrivateFile.h"
#include "base/PrivateFolder.h"
#include "base/Registry.h"
#include "base/win32/PrivateRights.h"
#include "base/win32/System.h"
#include "support/Errors.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using win32::Handle;
using win32::WidePath;

class FilesOnWindowsTest : public testing::Test {
 protected:
  std::wstring Wide(std::string_view path) const {
    return WidePath(NativePath(disk.machine(), path));
  }
  void SetReadOnly(std::string_view path) const {
    SetFileAttributesW(Wide(path).c_str(), FILE_ATTRIBUTE_READONLY);
  }
  // The file held open as a program does that lets others share it like this.
  Handle Hold(std::string_view path, DWORD access, DWORD share) const {
    return Handle(
        CreateFileW(Wide(path).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  TestMachine disk;
  const Machine real;
};

TEST_F(FilesOnWindowsTest, AMachineWithoutAHomeHasTheRealDrives) {
  EXPECT_EQ(NativePath(real, "C:\\QUOREX\\a.txt"), "C:/QUOREX/a.txt");
  EXPECT_EQ(NativePath(real, "c:"), "c:/");
  EXPECT_EQ(NativePath(real, "\\PDF\\"), "/PDF");
  EXPECT_EQ(NativePath(real, "\\\\server\\logs\\a.ini"), "//server/logs/a.ini");
  EXPECT_EQ(NativePath(real, "C:\\\"2611 15\"\\a.txt"), "C:/2611 15/a.txt");
  EXPECT_TRUE(FolderExists(real, "C:\\"));
}

TEST_F(FilesOnWindowsTest, ANameIsWhatTheSystemMakesOfItAndALongPathIsTakenAsItIs) {
  WriteFile(disk, "C:\\a.txt. ", "bytes");
  EXPECT_EQ(disk.Get("C:\\a.txt"), "bytes");
  const std::string folder = "C:/" + std::string(200, 'x') + "/";
  EXPECT_EQ(WidePath(folder + std::string(43, 'y')).substr(0, 3), L"C:\\");
  EXPECT_EQ(WidePath(folder + std::string(44, 'y')).substr(0, 7), L"\\\\?\\C:\\");
}

TEST_F(FilesOnWindowsTest, AMachineWithAHomeHasItsDrivesBelowIt) {
  EXPECT_EQ(NativePath(disk, "C:\\a\\b"), disk.home() + "/drives/c/a/b");
  EXPECT_EQ(DrivePathText(disk, disk.home() + "/drives/c/a"), "C:\\a");
  EXPECT_EQ(NativePath(disk, PathText(disk.home())), disk.home());
}

TEST_F(FilesOnWindowsTest, NamesBeyondTheCodePageAndLongPathsAreFound) {
  const std::string name = "\xE4\xBF\x9D\xE5\xAE\x88 \xF0\x9F\x94\xA7.txt";
  std::string folder = "C:\\";
  for (int i = 0; i < 8; ++i) {
    folder += std::string(40, static_cast<char>('a' + i)) + "\\";
    MakeFolder(disk, folder);
  }
  WriteFile(disk, folder + name, "bytes");
  EXPECT_GT(NativePath(disk, folder + name).size(), 300u);
  EXPECT_EQ(ReadFile(disk, folder + name), "bytes");
  const auto entries = ScanFolder(disk, folder);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].name, name);
}

TEST_F(FilesOnWindowsTest, AFileIsFoundInAnySpellingAndKeepsItsOwn) {
  disk.Put("C:\\log\\LogFile.INI", "old");
  WriteFile(disk, "C:\\LOG\\logfile.ini", "new");
  ASSERT_EQ(ScanFolder(disk, "C:\\log").size(), 1u);
  EXPECT_EQ(ScanFolder(disk, "C:\\log")[0].name, "LogFile.INI");
  EXPECT_EQ(ReadFile(disk, "c:\\Log\\LOGFILE.ini"), "new");
}

TEST_F(FilesOnWindowsTest, ANameThatWouldStandForOthersReplacesNone) {
  disk.Put("C:\\log\\letter.txt", "keep");
  disk.Put("C:\\log\\later.txt", "keep, too");
  for (const char* name : {"C:\\log\\l*.txt", "C:\\log\\lat?r.txt", "C:\\log\\l<.txt"})
    EXPECT_ANY_THROW(WriteFile(disk, name, "new")) << name;
  EXPECT_EQ(disk.Get("C:\\log\\letter.txt"), "keep");
  EXPECT_EQ(disk.Get("C:\\log\\later.txt"), "keep, too");
  EXPECT_EQ(ScanFolder(disk, "C:\\log").size(), 2u);
}

TEST_F(FilesOnWindowsTest, AReadOnlyFileIsNeitherReplacedNorDeleted) {
  disk.Put("C:\\log\\a.txt", "old");
  SetReadOnly("C:\\log\\a.txt");
  EXPECT_EQ(ErrorOf([&] { WriteFile(disk, "C:\\log\\a.txt", "new"); }),
            ErrorNumber::kPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { DeleteFile(disk, "C:\\log\\a.txt"); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { DeleteFilesIn(disk, "C:\\log"); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "old");
  EXPECT_FALSE(native::RemoveTree(disk.Native("C:\\log")));
}

TEST_F(FilesOnWindowsTest, HiddenFilesStayWhenAFolderIsEmptied) {
  disk.Put("C:\\log\\a.txt", "");
  disk.Put("C:\\log\\b.txt", "");
  SetFileAttributesW(Wide("C:\\log\\b.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  DeleteFilesIn(disk, "C:\\log");
  EXPECT_FALSE(disk.Has("C:\\log\\a.txt"));
  EXPECT_TRUE(disk.Has("C:\\log\\b.txt"));
}

TEST_F(FilesOnWindowsTest, AFileThatAnotherProgramKeepsForItselfIsRefused) {
  disk.Put("C:\\log\\a.txt", "old");
  const Handle held = Hold("C:\\log\\a.txt", GENERIC_READ | GENERIC_WRITE, 0);
  ASSERT_TRUE(held.IsOpen());
  EXPECT_EQ(ErrorOf([&] { ReadFile(disk, "C:\\log\\a.txt"); }), ErrorNumber::kPermissionDenied);
  EXPECT_EQ(ErrorOf([&] { DeleteFile(disk, "C:\\log\\a.txt"); }), ErrorNumber::kPermissionDenied);
}

// Each try gives the new file the attributes of the old one first. The reader takes them away when
// he sees them, and goes when they come again: one try has been refused then.
TEST_F(FilesOnWindowsTest, AReplacementWaitsForAReaderWhoSharesNothing) {
  disk.Put("C:\\log\\a.txt", "old");
  SetFileAttributesW(Wide("C:\\log\\a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  const std::wstring made = Wide("C:\\log\\" + std::string(kTemporaryName));
  Handle held = Hold("C:\\log\\a.txt", GENERIC_READ, FILE_SHARE_READ);
  ASSERT_TRUE(held.IsOpen());
  std::atomic<bool> is_over = false;
  int tries_seen = 0;
  std::thread reader([&] {
    while (tries_seen < 2 && !is_over) {
      const DWORD attributes = GetFileAttributesW(made.c_str());
      if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_HIDDEN) == 0)
        continue;
      SetFileAttributesW(made.c_str(), FILE_ATTRIBUTE_NORMAL);
      ++tries_seen;
    }
    held.Close();
  });
  EXPECT_EQ(NumberRaisedBy([&] { WriteFile(disk, "C:\\log\\a.txt", "new"); }), std::nullopt);
  is_over = true;
  reader.join();
  EXPECT_EQ(tries_seen, 2);
  EXPECT_EQ(disk.Get("C:\\log\\a.txt"), "new");
  EXPECT_EQ(ScanFolder(disk, "C:\\log").size(), 1u);
}

TEST_F(FilesOnWindowsTest, AReplacementLeavesNothingBesideTheFile) {
  disk.MakeFolders("C:\\log");
  disk.Put("C:\\log\\" + std::string(kTemporaryName), "left by a writer that was killed");
  WriteFile(disk, "C:\\log\\a.txt", "new");
  WriteFile(disk, "C:\\log\\a.txt", "newer");
  WriteMadeFile(disk, "C:\\log\\b.txt", "made");
  CopyFile(disk, "C:\\log\\a.txt", "C:\\log\\c.txt");
  std::vector<std::string> names;
  ASSERT_FALSE(native::NamesIn(disk.Native("C:\\log"), names));
  EXPECT_EQ(names, (std::vector<std::string>{"a.txt", "b.txt", "c.txt"}));
  EXPECT_EQ(disk.Get("C:\\log\\c.txt"), "newer");
}

TEST_F(FilesOnWindowsTest, AReplacedFileKeepsItsAttributes) {
  disk.Put("C:\\log\\a.txt", "old");
  SetFileAttributesW(Wide("C:\\log\\a.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
  WriteFile(disk, "C:\\log\\a.txt", "new");
  EXPECT_NE(GetFileAttributesW(Wide("C:\\log\\a.txt").c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
}

TEST_F(FilesOnWindowsTest, MissingFilesAndFoldersHaveTheirErrors) {
  EXPECT_EQ(ErrorOf([&] { ReadFile(disk, "C:\\a.txt"); }), ErrorNumber::kFileNotFound);
  EXPECT_EQ(ErrorOf([&] { ReadFile(disk, "C:\\none\\a.txt"); }), ErrorNumber::kPathNotFound);
  EXPECT_EQ(ErrorOf([&] { WriteFile(disk, "C:\\none\\a.txt", ""); }), ErrorNumber::kPathNotFound);
  EXPECT_EQ(ErrorOf([&] { ReadFile(disk, "C:\\"); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { ReadFile(disk, "C:\\a?.txt"); }), ErrorNumber::kFileNotFound);
  EXPECT_EQ(ErrorOf([&] { MakeFolder(disk, "C:\\none\\sub"); }), ErrorNumber::kPathNotFound);
  disk.Put("C:\\file", "");
  EXPECT_EQ(ErrorOf([&] { MakeFolder(disk, "C:\\file"); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { RemoveFolder(disk, "C:\\file"); }), ErrorNumber::kPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { ScanFolder(disk, "C:\\none"); }), ErrorNumber::kPathNotFound);
}

TEST_F(FilesOnWindowsTest, AStampChangesWithTheFile) {
  disk.Put("C:\\log\\a.txt", "1");
  const FileStamp first = StampOf(disk, "C:\\log\\a.txt");
  EXPECT_EQ(StampOf(disk, "C:\\LOG\\A.TXT"), first);
  EXPECT_EQ(first.size, 1u);
  WriteFile(disk, "C:\\log\\a.txt", "22");
  EXPECT_NE(StampOf(disk, "C:\\log\\a.txt"), first);
  EXPECT_EQ(StampOf(disk, "C:\\none"), FileStamp());
}

TEST_F(FilesOnWindowsTest, FilesBelowAFolderAreLookedAtAndRead) {
  disk.Put("C:\\root\\log\\A.txt", "text");
  disk.MakeFolders("C:\\root\\log\\sub");
  FilesBelow below(disk, "C:\\root");
  FileStamp looked, read;
  std::string_view bytes;
  EXPECT_EQ(below.Look("log", "a.txt", looked), FilesBelow::Found::kFile);
  EXPECT_EQ(below.Read("log", "a.txt", read, bytes), FilesBelow::Found::kFile);
  EXPECT_EQ(bytes, "text");
  EXPECT_EQ(looked, read);
  EXPECT_EQ(below.Look("log", "none.txt", looked), FilesBelow::Found::kMissing);
  EXPECT_EQ(below.Look("log", "sub", looked), FilesBelow::Found::kUnclear);
}

TEST_F(FilesOnWindowsTest, ALockIsHeldByOneAtATime) {
  const std::string path = disk.Native("C:\\lock");
  {
    const FileLock first(path, FileLock::Patience::kTry);
    EXPECT_TRUE(first.IsHeld());
    EXPECT_FALSE(FileLock(path, FileLock::Patience::kTry).IsHeld());
  }
  EXPECT_TRUE(FileLock(path, FileLock::Patience::kWait).IsHeld());
}

TEST_F(FilesOnWindowsTest, APrivateFileIsNotForEverybody) {
  const std::string path = disk.Native("C:\\note.txt");
  ReplacePrivateFile(path, "first line");
  ReplacePrivateFile(path, "first again");
  EXPECT_EQ(disk.Get("C:\\note.txt"), "first again");
  EXPECT_FALSE(EverybodyMayRead(path));
  std::vector<std::string> names;
  ASSERT_FALSE(native::NamesIn(disk.Native("C:\\"), names));
  EXPECT_EQ(names, std::vector<std::string>{"note.txt"});
}

TEST_F(FilesOnWindowsTest, APrivateFolderIsOursAndCanBeHidden) {
  MakePrivateFolder(disk, "C:\\ours");
  MakePrivateFolder(disk, "C:\\ours");
  HideFolder(disk, "C:\\ours");
  EXPECT_NE(GetFileAttributesW(Wide("C:\\ours").c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
  disk.Put("C:\\file", "");
  EXPECT_EQ(ErrorOf([&] { MakePrivateFolder(disk, "C:\\file"); }), ErrorNumber::kPathFileAccess);
}

TEST_F(FilesOnWindowsTest, APrivateFolderIsForNobodyElse) {
  MakePrivateFolder(disk, "C:\\ours");
  EXPECT_FALSE(EverybodyMayRead(disk.Native("C:\\ours")));
}

TEST_F(FilesOnWindowsTest, AMachineWithoutAHomeReadsTheRegistryOfTheSystem) {
  constexpr wchar_t kKey[] = L"SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr),
            ERROR_SUCCESS);
  constexpr wchar_t kPath[] = L"C:\\QUOREX\\\x00E4";
  RegSetValueExW(key, L"Path", 0, REG_SZ, reinterpret_cast<const BYTE*>(kPath), sizeof kPath);
  const std::string narrow = win32::Narrow(kKey);
  EXPECT_EQ(ReadMachineRegistry("", narrow, "PATH"), "C:\\QUOREX\\\xC3\xA4");
  EXPECT_EQ(ReadMachineRegistry("", narrow, "None"), std::nullopt);
  // As it stands, whatever the system would make of it.
  constexpr wchar_t kOther[] = L"%TEMP%\\";
  RegSetValueExW(key, L"Path", 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(kOther),
                 sizeof kOther);
  EXPECT_EQ(ReadMachineRegistry("", narrow, "Path"), "%TEMP%\\");
  EXPECT_EQ(ReadMachineRegistry(disk.home(), narrow, "Path"), std::nullopt);
  RegDeleteValueW(key, L"Path");
  RegCloseKey(key);
}

TEST_F(FilesOnWindowsTest, AMachineWithoutAHomeHasTheCodePageOfTheSystem) {
  const CodePage* page = CodePage::Find(static_cast<int>(GetACP()));
  EXPECT_EQ(OpenMachine("").code_page, page == nullptr ? CodePage::Find(1252) : page);
  EXPECT_EQ(OpenMachine("").home, "");
}

}  // namespace
}  // namespace logbook::test
