// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SnapshotCache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/RunTimeError.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

constexpr const char* kIni = "C:\\log\\logfile.ini";
constexpr const char* kNumbers = "C:\\log\\auser.txt";
constexpr const char* kMacro = "C:\\log\\paramvar.mac";

class Snapshots : public testing::Test {
 protected:
  // Makes the files look long unchanged, so that what is read of them is kept. The change time of
  // the file system cannot be set: wait until it has aged.
  void Age() {
    std::int64_t changed = 0;
    for (const char* path : {kIni, kNumbers, kMacro}) {
      const fs::path native = machine.Native(path);
      if (!fs::exists(native)) continue;
      fs::last_write_time(native, fs::file_time_type::clock::now() - std::chrono::hours(1));
      changed = std::max(changed, StampOf(machine, path).changed_ns);
    }
    const auto now = [] {
      return std::chrono::duration_cast<std::chrono::nanoseconds>(
                 std::chrono::system_clock::now().time_since_epoch())
          .count();
    };
    while (now() <= changed + 200'000'000) {
    }
  }

  test::TestMachine machine;
  SnapshotCache cache{machine};
};

TEST_F(Snapshots, GiveWhatTheFilesHold) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1,2,3\r\n");
  machine.Put(kMacro, "XPOS=5\r\nCLMD=1\r\n");
  for (int pass = 0; pass < 3; ++pass) {
    EXPECT_EQ(cache.Options(kIni).LENS, 1);
    EXPECT_EQ(cache.Number(kNumbers, 2), 3);
    EXPECT_EQ(cache.Macro(kMacro, "XPOS"), (MacroLines{"XPOS=5", "", "CLMD=1"}));
    if (pass == 0) Age();
  }
}

TEST_F(Snapshots, AMissingFileHasNoOptionsAndNoNumber) {
  EXPECT_EQ(cache.Options(kIni).LENS, 0);
  EXPECT_EQ(cache.Number(kNumbers, 0), std::nullopt);
  EXPECT_THROW(cache.Macro(kMacro, "XPOS"), RunTimeError);
}

TEST_F(Snapshots, ATooShortFileGivesZero) {
  machine.Put(kNumbers, "1,2");
  EXPECT_EQ(cache.Number(kNumbers, 2), 0);
  EXPECT_EQ(cache.Number(kNumbers, 250), 0);
  machine.Put(kNumbers, "");
  EXPECT_EQ(cache.Number(kNumbers, 0), 0);
}

TEST_F(Snapshots, ANumberTooLargeForADoubleGivesZeroAndTheNextOneCounts) {
  machine.Put(kNumbers, "1e999,2");
  EXPECT_EQ(cache.Number(kNumbers, 0), 0);
  EXPECT_EQ(cache.Number(kNumbers, 1), 2);
}

TEST_F(Snapshots, AFolderInPlaceOfAFileRaisesWhatOpeningRaises) {
  machine.MakeFolders(kNumbers);
  EXPECT_THROW(cache.Number(kNumbers, 0), RunTimeError);
}

TEST_F(Snapshots, AChangedFileIsReadAgain) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1");
  machine.Put(kMacro, "XPOS=5\r\n");
  Age();
  EXPECT_EQ(cache.Options(kIni).LENS, 1);
  EXPECT_EQ(cache.Number(kNumbers, 0), 1);
  EXPECT_EQ(cache.Macro(kMacro, "XPOS").Value, "XPOS=5");
  machine.Put(kIni, "[OPTION]\r\nLENS=2\r\n");
  machine.Put(kNumbers, "2");
  machine.Put(kMacro, "XPOS=6\r\n");
  EXPECT_EQ(cache.Options(kIni).LENS, 2);
  EXPECT_EQ(cache.Number(kNumbers, 0), 2);
  EXPECT_EQ(cache.Macro(kMacro, "XPOS").Value, "XPOS=6");
}

TEST_F(Snapshots, ARemovedFileIsMissingAtOnce) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1");
  Age();
  cache.Options(kIni);
  cache.Number(kNumbers, 0);
  fs::remove(machine.Native(kIni));
  fs::remove(machine.Native(kNumbers));
  EXPECT_EQ(cache.Options(kIni).LENS, 0);
  EXPECT_EQ(cache.Number(kNumbers, 0), std::nullopt);
}

// Rewrites in place keep identity and size, and quick ones may fall into one grain of the file
// system's time stamps.
TEST_F(Snapshots, RapidChangesOfTheSameSizeAreAllSeen) {
  for (int i = 0; i < 300; ++i) {
    const std::string digit(1, static_cast<char>('1' + i % 9));
    machine.Put(kIni, "[OPTION]\r\nLENS=" + digit + "\r\n");
    machine.Put(kNumbers, digit);
    machine.Put(kMacro, "XPOS=" + digit + "\r\n");
    ASSERT_EQ(cache.Options(kIni).LENS, i % 9 + 1);
    ASSERT_EQ(cache.Number(kNumbers, 0), i % 9 + 1);
    ASSERT_EQ(cache.Macro(kMacro, "XPOS").Value, "XPOS=" + digit);
  }
}

TEST_F(Snapshots, AnotherFileUnderTheSameNameIsReadEvenWithEqualTimes) {
  machine.Put(kNumbers, "1");
  machine.Put("C:\\log\\other.txt", "2");
  Age();
  EXPECT_EQ(cache.Number(kNumbers, 0), 1);
  const auto time = fs::last_write_time(machine.Native(kNumbers));
  fs::rename(machine.Native("C:\\log\\other.txt"), machine.Native(kNumbers));
  fs::last_write_time(machine.Native(kNumbers), time);
  EXPECT_EQ(cache.Number(kNumbers, 0), 2);
}

TEST_F(Snapshots, AMacroFileTooLargeToKeepGivesEachOfItsLines) {
  const std::string filler(200 * 1024, 'a');
  machine.Put(kMacro, filler + "\r\nXPOS=5\r\nYPOS=6\r\n");
  Age();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(cache.Macro(kMacro, "XPOS").Value, "XPOS=5");
    EXPECT_EQ(cache.Macro(kMacro, "YPOS").Value, "YPOS=6");
  }
}

}  // namespace
}  // namespace logbook
