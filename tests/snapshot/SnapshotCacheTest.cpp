// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SnapshotCache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "base/RunTimeError.h"
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
    WaitFor(changed);
  }

  // Waits until a change at that time counts as long ago.
  static void WaitFor(std::int64_t changed) {
    const auto now = [] {
      return std::chrono::duration_cast<std::chrono::nanoseconds>(
                 std::chrono::system_clock::now().time_since_epoch())
          .count();
    };
    while (now() <= changed + 200'000'000) {
    }
  }

  void AgeFolder() {
    const std::int64_t changed = StampOf(machine, "C:\\log").changed_ns;
    WaitFor(changed);
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

TEST_F(Snapshots, APassSeesAFileAsItWasAtTheFirstUse) {
  machine.Put(kNumbers, "1");
  Age();
  {
    const SnapshotCache::Pass pass(cache);
    EXPECT_EQ(cache.Number(kNumbers, 0), 1);
    machine.Put(kNumbers, "2");
    {
      const SnapshotCache::Pass inner(cache);
      EXPECT_EQ(cache.Number(kNumbers, 0), 1);
    }
    EXPECT_EQ(cache.Number(kNumbers, 0), 1);
  }
  EXPECT_EQ(cache.Number(kNumbers, 0), 2);
}

TEST_F(Snapshots, AFileThatChangedBeforeItsFirstUseInAPassIsReadAgain) {
  machine.Put(kNumbers, "1");
  Age();
  EXPECT_EQ(cache.Number(kNumbers, 0), 1);
  machine.Put(kNumbers, "2");
  const SnapshotCache::Pass pass(cache);
  EXPECT_EQ(cache.Number(kNumbers, 0), 2);
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

TEST_F(Snapshots, GiveTheDateOfALog) {
  EXPECT_EQ(cache.Date(kIni), "");
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  EXPECT_EQ(cache.Date(kIni), "");
  machine.Put(kIni, "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\n");
  Age();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(cache.Date(kIni), "11/15/2026 05:09:59");
    EXPECT_EQ(cache.Options(kIni).LENS, 1);
  }
  machine.Put(kIni, "[LogFile]\r\nDate=" + std::string(600, 'x') + "\r\n");
  EXPECT_EQ(cache.Date(kIni), std::string(511, 'x'));
}

// The folder of a log is settled when its newest name is.
TEST_F(Snapshots, AMacroFileIsFoundAsTheFolderIsNow) {
  const auto find = [this](const char* file) -> std::string {
    const auto path = cache.FindMacro("C:\\log\\", file);
    if (!path) return "(none)";
    return fs::path(NativePath(machine, *path)).filename();
  };
  machine.MakeFolders("C:\\log");
  EXPECT_EQ(find("sensevar.mac"), "(none)");
  machine.Put("C:\\log\\SENSEVA2.MAC", "");
  machine.Put("C:\\log\\PARAMVAR.MAC", "");
  AgeFolder();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(find("sensevar.mac"), "SENSEVA2.MAC");
    EXPECT_EQ(find("paramvar.mac"), "PARAMVAR.MAC");
    EXPECT_EQ(find("resovar.mac"), "(none)");
  }
  machine.Put("C:\\log\\SENSEVAR.MAC", "");
  machine.Put("C:\\log\\resovar.mac", "");
  EXPECT_EQ(find("sensevar.mac"), "SENSEVAR.MAC");
  EXPECT_EQ(find("resovar.mac"), "resovar.mac");
  AgeFolder();
  EXPECT_EQ(find("sensevar.mac"), "SENSEVAR.MAC");
  fs::remove(machine.Native("C:\\log\\SENSEVAR.MAC"));
  EXPECT_EQ(find("sensevar.mac"), "SENSEVA2.MAC");
}

// Rewrites in place keep identity and size, and quick ones may fall into one grain of the file
// system's time stamps.
TEST_F(Snapshots, AMacroFileThatALinkLeadsToMayComeAndGoWithoutAChangeOfTheFolder) {
  const auto found = [&] { return cache.FindMacro("C:\\log\\", "sensevar.mac"); };
  const std::string first = machine.Native("C:\\log\\SENSEVAR.MAC");
  const std::string target = machine.Native("C:\\elsewhere.mac");
  machine.Put("C:\\log\\SENSEVA2.MAC", "x=1");
  fs::create_symlink(target, first);
  AgeFolder();
  for (int pass = 0; pass < 2; ++pass) {
    ASSERT_TRUE(found());
    EXPECT_TRUE(found()->ends_with("SENSEVA2.MAC"));
    machine.Put("C:\\elsewhere.mac", "x=2");
    ASSERT_TRUE(found());
    EXPECT_TRUE(found()->ends_with("SENSEVAR.MAC"));
    fs::remove(target);
  }
}

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

TEST_F(Snapshots, APassTellsBeforeEachFileThatItTurnsTo) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1,2,3\r\n");
  int told = 0;
  {
    const SnapshotCache::Pass pass(cache, [&] { ++told; });
    {
      const SnapshotCache::Pass inner(cache);
      cache.Options(kIni);
      EXPECT_EQ(told, 1);
    }
    cache.Date(kIni);
    EXPECT_EQ(told, 1) << "it has that file already";
    cache.Number(kNumbers, 2);
    EXPECT_EQ(told, 2);
  }
  cache.Options(kIni);
  EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace logbook
