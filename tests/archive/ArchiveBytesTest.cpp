// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The same log gives the same archive on every system, byte for byte.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "archive/Archive.h"
#include "base/Utf8Path.h"
#include "support/TestMachine.h"
#include "support/TimeZone.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

class ArchiveBytesTest : public testing::Test {
 protected:
  ArchiveBytesTest() { UseUtc(); }

  // A file or folder that nobody has touched since a day in November.
  void Settle(const std::string& path, fs::perms rights) const {
    constexpr std::time_t kDay = 1794760170;  // 2026-11-15 16:29:30
    fs::permissions(Utf8Path(disk.Native(path)), rights);
    SetModified(disk.Native(path), kDay);
  }
  void PutLog(const std::string& folder) const {
    constexpr fs::perms kFile = fs::perms(0644), kFolder = fs::perms(0755);
    std::string rows;
    for (int row = 0; row < 400; ++row) rows += std::to_string(row * row) + ",\r\n";
    disk.Put(folder + "\\aall.txt", rows);
    disk.Put(folder + "\\logfile.ini", "[LogFile]\r\nDate=11/15/2026 16:29:30\r\n");
    disk.Put(folder + "\\sub\\\xC3\xA4.txt", "text");
    for (const char* file : {"\\aall.txt", "\\logfile.ini", "\\sub\\\xC3\xA4.txt"})
      Settle(folder + file, kFile);
    Settle(folder + "\\sub", kFolder);
    Settle(folder, kFolder);
  }

  TestMachine disk;
};

TEST_F(ArchiveBytesTest, TwoLogsGiveTheBytesOfTheGoldenArchive) {
  PutLog("C:\\26111500");
  PutLog("C:\\26111501");
  std::string result(kZipResultBuffer, '\0');
  ZipWriter writer(disk);
  EXPECT_EQ(writer.arZip(0, "C:\\logs.zip", "C:\\26111500", "-a -r", result), 0) << result;
  EXPECT_EQ(writer.arZip(0, "C:\\logs.zip", "C:\\26111501", "-a -r", result), 0) << result;
  EXPECT_EQ(writer.Finish(result), 0) << result;
  const std::string actual = disk.Get("C:\\logs.zip");
  std::ifstream golden(fs::path(TEST_DATA_DIR) / "archive" / "two_logs.zip", std::ios::binary);
  const std::string expected{std::istreambuf_iterator<char>(golden), {}};
  EXPECT_EQ(actual.size(), expected.size());
  EXPECT_TRUE(actual == expected) << "what was got lies in " << ACTUAL_ARCHIVE;
  std::ofstream(fs::path(ACTUAL_ARCHIVE), std::ios::binary) << actual;
}

TEST_F(ArchiveBytesTest, AnAdditionToAnArchiveReplacesEqualNamesAndNothingElse) {
  PutLog("C:\\26111500");
  PutLog("C:\\26111501");
  std::string result(kZipResultBuffer, '\0');
  EXPECT_EQ(arZip(disk, 0, "C:\\a.zip", "C:\\26111500", "-a -r", result), 0) << result;
  EXPECT_EQ(arZip(disk, 0, "C:\\a.zip", "C:\\26111501", "-a -r", result), 0) << result;
  EXPECT_EQ(arZip(disk, 0, "C:\\a.zip", "C:\\26111501", "-a -r", result), 0) << result;
  const std::string bytes = disk.Get("C:\\a.zip");
  std::size_t entries = 0;
  for (std::size_t at = bytes.find("PK\x01\x02"); at != bytes.npos;
       at = bytes.find("PK\x01\x02", at + 1))
    ++entries;
  EXPECT_EQ(entries, 10u);
}

TEST_F(ArchiveBytesTest, AMissingLogFailsAndLeavesTheArchiveAsItWas) {
  PutLog("C:\\26111500");
  std::string result(kZipResultBuffer, '\0');
  EXPECT_EQ(arZip(disk, 0, "C:\\a.zip", "C:\\26111500", "-r", result), 0) << result;
  const std::string before = disk.Get("C:\\a.zip");
  EXPECT_EQ(arZip(disk, 0, "C:\\a.zip", "C:\\none", "-a -r", result),
            static_cast<std::int16_t>(ZipResult::kSourceMissing));
  EXPECT_EQ(disk.Get("C:\\a.zip"), before);
}

}  // namespace
}  // namespace logbook::test
