// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SnapshotCache.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

#include "base/RunTimeError.h"
#include "support/DiskCalls.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

constexpr const char* kIni = "C:\\log\\logfile.ini";
constexpr const char* kNumbers = "C:\\log\\auser.txt";
constexpr const char* kMacro = "C:\\log\\paramvar.mac";
constexpr const char* kComment = "C:\\log\\comment.txt";

// Between two looks at the clock.
constexpr std::chrono::milliseconds kLook(1);

class Snapshots : public testing::Test {
 protected:
  // Makes the files look long unchanged, so that what is read of them is kept. The change time of
  // the file system cannot be set: wait until it has aged.
  void Age() {
    std::int64_t changed = 0;
    for (const char* path : {kIni, kNumbers, kMacro, kComment}) {
      const fs::path native = machine.Native(path);
      if (!fs::exists(native)) continue;
      fs::last_write_time(native, fs::file_time_type::clock::now() - std::chrono::hours(1));
      changed = std::max(changed, StampOf(machine, path).changed_ns);
    }
    WaitFor(changed);
  }

  // Waits until a change at that time counts as long ago, and lets the disk show so.
  void WaitFor(std::int64_t changed) {
    const auto now = [] {
      return std::chrono::duration_cast<std::chrono::nanoseconds>(
                 std::chrono::system_clock::now().time_since_epoch())
          .count();
    };
    while (now() <= changed + 200'000'000) std::this_thread::sleep_for(kLook);
    ShowTheClock();
  }

  // Changes the root's time, as a list does that is written anew.
  void ShowTheClock() { machine.Put("C:\\" + std::to_string(++shown_), ""); }

  void AgeFolder() {
    const std::int64_t changed = StampOf(machine, "C:\\log").changed_ns;
    WaitFor(changed);
  }

  // The log's answers, each in a pass of its own unless one lives.
  template <typename Question>
  auto Ask(const Question& question) {
    const SnapshotCache::Pass pass(cache);
    return question(cache.Log("C:\\", "log"));
  }
  double Lens() {
    return Ask([](LogSnapshots& log) { return log.Options().LENS; });
  }
  std::string Date() {
    return Ask([](LogSnapshots& log) { return log.Date(); });
  }
  std::string Comment() {
    return Ask([](LogSnapshots& log) { return log.Comment(); });
  }
  std::optional<double> Number(int row) {
    return Ask([row](LogSnapshots& log) { return log.Number("auser.txt", row); });
  }
  std::optional<MacroLines> Macro(const std::string& variable,
                                  const std::string& file = "paramvar.mac") {
    return Ask([&](LogSnapshots& log) { return log.Macro(file, variable); });
  }

  // True if the answer to a question needs the bytes of a file.
  template <typename Question>
  bool IsRead(const Question& question) {
    const test::DiskCalls calls;
    question();
    return test::DiskCalls::Count("read ") > 0;
  }

  test::TestMachine machine;
  SnapshotCache cache{machine};

 private:
  int shown_ = 0;
};

TEST_F(Snapshots, GiveWhatTheFilesHold) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1,2,3\r\n");
  machine.Put(kMacro, "XPOS=5\r\nCLMD=1\r\n");
  for (int pass = 0; pass < 3; ++pass) {
    EXPECT_EQ(Lens(), 1);
    EXPECT_EQ(Number(2), 3);
    EXPECT_EQ(Macro("XPOS"), (MacroLines{"XPOS=5", "", "CLMD=1"}));
    if (pass == 0) Age();
  }
}

TEST_F(Snapshots, AReadErrorGivesZeroAfterTheValuesBeforeItAndIsNotKept) {
  machine.Put(kNumbers, "1\r\n2\r\n3\r\n");
  Age();
  {
    const test::DiskCalls calls;
    test::DiskCalls::FailReads(machine.Native(kNumbers), 5);  // behind the second carriage return
    EXPECT_EQ(Number(0), 1);
    EXPECT_EQ(Number(1), 2);
    EXPECT_EQ(Number(2), 0);
    test::DiskCalls::FailReads(machine.Native(kNumbers), 4);  // the number may go on
    EXPECT_EQ(Number(1), 0);
    test::DiskCalls::FailReads(machine.Native(kNumbers), 0);
    EXPECT_EQ(Number(0), 0);
  }
  EXPECT_EQ(Number(1), 2);
  EXPECT_EQ(Number(2), 3);
}

TEST_F(Snapshots, AReadErrorOfADescriptorIsNotKept) {
  machine.Put(kIni, "[LogFile]\r\nDate=d\r\n" + std::string(100'000, ';'));
  Age();
  {
    const test::DiskCalls calls;
    test::DiskCalls::FailReads(machine.Native(kIni), 90'000);
    EXPECT_EQ(Date(), "");
  }
  EXPECT_EQ(Date(), "d");
}

// How long a change of the file may stay unseen in its stamps.
constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kFineGrain = kSecond / 10;
constexpr std::int64_t kWholeSecondsGrain = 5 * kSecond / 2;

class SettlingFile : public Snapshots {
 protected:
  static std::int64_t Now() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  }

  static void WaitUntil(std::int64_t moment) {
    while (Now() <= moment) std::this_thread::sleep_for(kLook);
  }

  // Writes the file and gives it this time of modification.
  void PutModifiedAt(std::int64_t moment) {
    machine.Put(kNumbers, "1,2");
    const timespec times[] = {{0, UTIME_OMIT}, {moment / kSecond, moment % kSecond}};
    ASSERT_EQ(utimensat(AT_FDCWD, machine.Native(kNumbers).c_str(), times, 0), 0);
  }

  // True if the file is read again at a second use. The moment of the decision is told.
  bool IsReadTwice(std::int64_t& decided) {
    const test::DiskCalls calls;
    Number(0);
    decided = Now();
    const int once = test::DiskCalls::Count("read ");
    Number(0);
    return test::DiskCalls::Count("read ") > once;
  }

  // As IsReadTwice for a file that was modified at a moment, at another moment, but not after a
  // third: on a busy machine it is tried again until it was in time.
  bool IsReadTwiceBetween(const std::function<std::int64_t()>& modify, std::int64_t after,
                          std::int64_t before) {
    while (true) {
      const std::int64_t base = modify();
      WaitUntil(base + after);
      std::int64_t decided = 0;
      const bool twice = IsReadTwice(decided);
      if (decided < base + before) return twice;
    }
  }
};

TEST_F(SettlingFile, AFileIsKeptOnceItsTimesAreOlderThanTheirGrain) {
  std::int64_t decided = 0;
  PutModifiedAt(Now() - kSecond / 4 - 1);
  WaitUntil(Now() + 2 * kFineGrain);
  ShowTheClock();
  EXPECT_FALSE(IsReadTwice(decided));
  const std::int64_t whole = (Now() / kSecond - 4) * kSecond;
  PutModifiedAt(whole);
  WaitUntil(StampOf(machine, kNumbers).changed_ns + kWholeSecondsGrain + kFineGrain);
  ShowTheClock();
  EXPECT_FALSE(IsReadTwice(decided));
}

// The clock of a network drive may be behind this machine's, by which the file looks old.
TEST_F(SettlingFile, AFileIsReadAgainWhileItsDiskHasShownNoLaterTime) {
  std::int64_t decided = 0;
  PutModifiedAt(Now() - kSecond / 4 - 1);
  WaitUntil(Now() + 2 * kFineGrain);
  EXPECT_TRUE(IsReadTwice(decided));
  ShowTheClock();
  EXPECT_FALSE(IsReadTwice(decided));
}

TEST_F(SettlingFile, AFileIsKeptOnceItHasBeenSeenUnchangedForTheGrain) {
  std::int64_t decided = 0;
  PutModifiedAt(Now() - kSecond / 4 - 1);
  Number(0);
  WaitUntil(Now() + 2 * kFineGrain);
  Number(0);
  EXPECT_FALSE(IsReadTwice(decided));
  const test::DiskCalls calls;
  Number(0);
  EXPECT_EQ(test::DiskCalls::Count("read "), 0);
}

// A list's root may have been left alone for long.
TEST_F(SettlingFile, AFileShowsTheClockOfItsDiskWhereTheRootIsOlder) {
  std::int64_t decided = 0;
  machine.MakeFolders("C:\\log");
  WaitUntil(StampOf(machine, "C:\\").changed_ns + kSecond / 2);
  PutModifiedAt(Now() - kSecond / 4 - 1);
  Number(0);
  WaitUntil(Now() + 2 * kFineGrain);
  Number(0);
  EXPECT_FALSE(IsReadTwice(decided));
}

TEST_F(SettlingFile, AFileIsReadAgainWithinATenthOfASecondOfItsModification) {
  EXPECT_TRUE(IsReadTwiceBetween(
      [this] {
        const std::int64_t moment = Now() + kSecond / 5 + 1;
        PutModifiedAt(moment % kSecond == 0 ? moment + 1 : moment);
        return StampOf(machine, kNumbers).modified_ns;
      },
      0, kFineGrain));
}

TEST_F(SettlingFile, AFileIsReadAgainWithinATenthOfASecondOfAChangeOfItsStatus) {
  EXPECT_TRUE(IsReadTwiceBetween(
      [this] {
        PutModifiedAt(Now() - 3600 * kSecond + 1);
        return StampOf(machine, kNumbers).changed_ns;
      },
      0, kFineGrain));
}

TEST_F(SettlingFile, AFileWhoseTimeIsInWholeSecondsIsReadAgainForTwoAndAHalf) {
  EXPECT_TRUE(IsReadTwiceBetween(
      [this] {
        PutModifiedAt((Now() / kSecond + 1) * kSecond);
        return StampOf(machine, kNumbers).modified_ns;
      },
      2 * kFineGrain, kWholeSecondsGrain));
}

TEST_F(Snapshots, AMissingFileHasNoOptionsAndNoNumber) {
  EXPECT_EQ(Lens(), 0);
  EXPECT_EQ(Number(0), std::nullopt);
  EXPECT_EQ(Macro("XPOS"), std::nullopt);
}

TEST_F(Snapshots, ATooShortFileGivesZero) {
  machine.Put(kNumbers, "1,2");
  EXPECT_EQ(Number(2), 0);
  EXPECT_EQ(Number(250), 0);
  machine.Put(kNumbers, "");
  EXPECT_EQ(Number(0), 0);
}

TEST_F(Snapshots, ANumberTooLargeForADoubleGivesZeroAndTheNextOneCounts) {
  machine.Put(kNumbers, "1e999,2");
  EXPECT_EQ(Number(0), 0);
  EXPECT_EQ(Number(1), 2);
}

TEST_F(Snapshots, AFileTooLargeToKeepHasZeroForWhatIsNoNumberAndBehindItsEnd) {
  const std::string blanks(100'000, ' ');
  machine.Put(kNumbers, "1,2," + blanks + "1e999,4");
  for (const int row : {2, 4, 5}) {
    cache.Expect({});
    EXPECT_EQ(Number(row), 0) << row;
  }
  EXPECT_EQ(Number(3), 4);
}

TEST_F(Snapshots, AFolderInPlaceOfAFileRaisesWhatOpeningRaises) {
  machine.MakeFolders(kNumbers);
  EXPECT_THROW(Number(0), RunTimeError);
}

TEST_F(Snapshots, AChangedFileIsReadAgain) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1");
  machine.Put(kMacro, "XPOS=5\r\n");
  Age();
  EXPECT_EQ(Lens(), 1);
  EXPECT_EQ(Number(0), 1);
  EXPECT_EQ(Macro("XPOS")->Value, "XPOS=5");
  machine.Put(kIni, "[OPTION]\r\nLENS=2\r\n");
  machine.Put(kNumbers, "2");
  machine.Put(kMacro, "XPOS=6\r\n");
  EXPECT_EQ(Lens(), 2);
  EXPECT_EQ(Number(0), 2);
  EXPECT_EQ(Macro("XPOS")->Value, "XPOS=6");
}

TEST_F(Snapshots, APassSeesAFileAsItWasAtTheFirstUse) {
  machine.Put(kNumbers, "1");
  Age();
  {
    const SnapshotCache::Pass pass(cache);
    EXPECT_EQ(Number(0), 1);
    machine.Put(kNumbers, "2");
    {
      const SnapshotCache::Pass inner(cache);
      EXPECT_EQ(Number(0), 1);
    }
    EXPECT_EQ(Number(0), 1);
  }
  EXPECT_EQ(Number(0), 2);
}

TEST_F(Snapshots, APassSeesAFileThatWasKnownAsItWasAtTheFirstUse) {
  machine.Put(kNumbers, "1");
  Age();
  EXPECT_EQ(Number(0), 1);
  const SnapshotCache::Pass pass(cache);
  EXPECT_EQ(Number(0), 1);
  machine.Put(kNumbers, "2");
  EXPECT_EQ(Number(0), 1);
}

TEST_F(Snapshots, AnUnchangedFileIsReadOnceHoweverLargeItIs) {
  for (const std::size_t filler : {0, 100'000}) {
    const std::string rest(filler, 'x');
    machine.Put(kIni, "[LogFile]\r\nDate=d\r\n;" + rest);
    machine.Put(kNumbers, "1,2,3," + rest);
    machine.Put(kMacro, "XPOS=5\r\n" + rest);
    machine.Put(kComment, "Cones\r\n" + rest);
    Age();
    const auto ask = [this] {
      EXPECT_EQ(Date(), "d");
      EXPECT_EQ(Number(2), 3);
      EXPECT_EQ(Macro("XPOS")->Value, "XPOS=5");
      EXPECT_EQ(Comment(), "Cones");
    };
    EXPECT_TRUE(IsRead(ask));
    EXPECT_FALSE(IsRead(ask)) << filler;
  }
}

TEST_F(Snapshots, AnUnchangedFileBehindALinkIsReadOnce) {
  machine.Put("C:\\elsewhere.txt", "7");
  machine.MakeFolders("C:\\log");
  fs::create_symlink(machine.Native("C:\\elsewhere.txt"), machine.Native(kNumbers));
  Age();
  EXPECT_EQ(Number(0), 7);
  EXPECT_FALSE(IsRead([this] { EXPECT_EQ(Number(0), 7); }));
}

TEST_F(Snapshots, LinesOfFourKilobytesAreKeptAndLongerOnesReadEachTime) {
  for (const std::size_t more : {0, 1}) {
    const std::string comment(4096 + more, 'x');
    machine.Put(kComment, comment + "\r\n");
    const MacroLines lines = {.Value = "XPOS=" + std::string(2048 - 5, '1'),
                              .ColOpgs = "OPT_COLOPGS=" + std::string(1024 - 12, '2'),
                              .Clmd = "CLMD=" + std::string(1024 - 5 + more, '3')};
    machine.Put(kMacro, lines.Value + "\r\n" + lines.ColOpgs + "\r\n" + lines.Clmd + "\r\n");
    Age();
    const auto ask_comment = [&] { EXPECT_TRUE(Comment() == comment); };
    const auto ask_macro = [&] { EXPECT_TRUE(Macro("XPOS") == lines); };
    ask_comment();
    ask_macro();
    EXPECT_EQ(IsRead(ask_comment), more > 0);
    EXPECT_EQ(IsRead(ask_macro), more > 0);
  }
}

TEST_F(Snapshots, AnErrorInPlaceOfAKeptLineIsRaisedUntilTheFileChanges) {
  machine.Put(kComment, "Cones");
  Age();
  EXPECT_EQ(Comment(), "Cones");
  machine.Put(kComment, "");
  for (int pass = 0; pass < 2; ++pass) EXPECT_THROW(Comment(), RunTimeError);
  machine.Put(kComment, "Torch");
  EXPECT_EQ(Comment(), "Torch");
}

TEST_F(Snapshots, AFolderInPlaceOfTheCommentIsNone) {
  machine.Put(kComment, "Cones");
  EXPECT_EQ(Comment(), "Cones");
  fs::remove(machine.Native(kComment));
  machine.MakeFolders(kComment);
  EXPECT_EQ(Comment(), "");
}

TEST_F(Snapshots, AFileThatChangedBeforeItsFirstUseInAPassIsReadAgain) {
  machine.Put(kNumbers, "1");
  Age();
  EXPECT_EQ(Number(0), 1);
  machine.Put(kNumbers, "2");
  const SnapshotCache::Pass pass(cache);
  EXPECT_EQ(Number(0), 2);
}

TEST_F(Snapshots, ARemovedFileIsMissingAtOnce) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1");
  Age();
  Lens();
  Number(0);
  fs::remove(machine.Native(kIni));
  fs::remove(machine.Native(kNumbers));
  EXPECT_EQ(Lens(), 0);
  EXPECT_EQ(Number(0), std::nullopt);
}

TEST_F(Snapshots, ADescriptorOfMoreThan16MegabytesHasNoDateAndNoOptions) {
  machine.Put(kIni, "[LogFile]\r\nDate=d\r\n[OPTION]\r\nLENS=1\r\n");
  EXPECT_EQ(Date(), "d");
  fs::resize_file(machine.Native(kIni), (16u << 20) + 1);
  EXPECT_EQ(Date(), "");
  EXPECT_EQ(Lens(), 0);
}

TEST_F(Snapshots, GiveTheDateOfALog) {
  EXPECT_EQ(Date(), "");
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  EXPECT_EQ(Date(), "");
  machine.Put(kIni, "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\n");
  Age();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(Date(), "11/15/2026 05:09:59");
    EXPECT_EQ(Lens(), 1);
  }
  machine.Put(kIni, "[LogFile]\r\nDate=" + std::string(600, 'x') + "\r\n");
  EXPECT_EQ(Date(), std::string(511, 'x'));
}

TEST_F(Snapshots, AMacroFileIsFoundAsTheFolderIsNow) {
  const auto value = [this](const char* file) {
    const auto lines = Macro("FROM", file);
    return lines ? lines->Value : "(none)";
  };
  const auto put = [this](const std::string& name) {
    machine.Put("C:\\log\\" + name, "FROM=" + name);
  };
  machine.MakeFolders("C:\\log");
  EXPECT_EQ(value("sensevar.mac"), "(none)");
  put("SENSEVA2.MAC");
  put("PARAMVAR.MAC");
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(value("sensevar.mac"), "FROM=SENSEVA2.MAC");
    EXPECT_EQ(value("paramvar.mac"), "FROM=PARAMVAR.MAC");
    EXPECT_EQ(value("resovar.mac"), "(none)");
    if (pass == 0) AgeFolder();
  }
  put("SenseVar.mac");
  put("resovar.mac");
  EXPECT_EQ(value("sensevar.mac"), "FROM=SenseVar.mac");
  EXPECT_EQ(value("resovar.mac"), "FROM=resovar.mac");
  put("SENSEVAR.MAC");
  put("ResoVar.mac");
  AgeFolder();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(value("sensevar.mac"), "FROM=SENSEVAR.MAC") << "the first spelling by its bytes";
    EXPECT_EQ(value("resovar.mac"), "FROM=resovar.mac") << "the spelling that was asked for";
  }
  fs::remove(machine.Native("C:\\log\\SENSEVAR.MAC"));
  EXPECT_EQ(value("sensevar.mac"), "FROM=SenseVar.mac");
  fs::remove(machine.Native("C:\\log\\SenseVar.mac"));
  EXPECT_EQ(value("sensevar.mac"), "FROM=SENSEVA2.MAC");
}

TEST_F(Snapshots, ALinkThatLeadsNowhereKeepsItsNameFromOtherSpellings) {
  machine.Put("C:\\log\\SENSEVAR.MAC", "FROM=capitals");
  machine.Put("C:\\log\\AUSER.TXT", "7");
  machine.Put("C:\\log\\COMMENT.TXT", "capitals");
  for (const char* name : {"sensevar.mac", "auser.txt", "comment.txt"}) {
    fs::create_symlink("nowhere", machine.Native("C:\\log") + "/" + name);
  }
  EXPECT_EQ(Macro("FROM", "sensevar.mac"), std::nullopt);
  EXPECT_EQ(Number(0), std::nullopt);
  EXPECT_EQ(Comment(), "");
}

TEST_F(Snapshots, AMacroFileThatALinkLeadsToMayComeAndGoWithoutAChangeOfTheFolder) {
  const std::string first = machine.Native("C:\\log\\SENSEVAR.MAC");
  const std::string target = machine.Native("C:\\elsewhere.mac");
  machine.Put("C:\\log\\SENSEVA2.MAC", "x=1");
  fs::create_symlink(target, first);
  AgeFolder();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(Macro("x", "sensevar.mac")->Value, "x=1");
    machine.Put("C:\\elsewhere.mac", "x=2");
    EXPECT_EQ(Macro("x", "sensevar.mac")->Value, "x=2");
    fs::remove(target);
  }
}

TEST_F(Snapshots, GiveTheFirstLineOfTheComment) {
  EXPECT_EQ(Comment(), "");
  machine.Put(kComment, "Cones \xE4\r\nTorch\r\n");
  for (int pass = 0; pass < 2; ++pass) EXPECT_EQ(Comment(), "Cones \xC3\xA4");
  machine.Put(kComment, "\n");
  EXPECT_EQ(Comment(), "");
  const std::string long_line(200 * 1024, 'x');
  machine.Put(kComment, long_line + "\r\n");
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_TRUE(Comment() == long_line.substr(0, 64 * 1024));
  }
  machine.Put(kComment, "");
  for (int pass = 0; pass < 2; ++pass) EXPECT_THROW(Comment(), RunTimeError);
  fs::remove(machine.Native(kComment));
  machine.MakeFolders(kComment);
  EXPECT_EQ(Comment(), "");
}

TEST_F(Snapshots, AFileTooLargeToKeepGivesItsNumbers) {
  std::string bytes;
  for (int row = 0; row < 251; ++row) bytes += std::string(1000, ' ') + std::to_string(row) + ",";
  machine.Put(kNumbers, bytes + "1e999");
  for (const int row : {250, 0, 17}) EXPECT_EQ(Number(row), row);
}

TEST_F(Snapshots, WhatWasNotExpectedIsReadAllTheSame) {
  machine.Put(kIni, "[OPTION]\r\nLENS=1\r\n");
  machine.Put(kNumbers, "1,2,3");
  machine.Put(kMacro, "XPOS=5\r\nYPOS=6\r\n");
  Age();
  SnapshotWants wants;
  wants.Add("auser.txt", 1);
  wants.Add("paramvar.mac", "XPOS");
  const SnapshotCache::Pass pass(cache);
  cache.Expect(wants);
  EXPECT_EQ(Date(), "");
  EXPECT_EQ(Number(1), 2);
  EXPECT_EQ(Number(2), 3);
  EXPECT_EQ(Number(0), 1);
  EXPECT_EQ(Macro("XPOS")->Value, "XPOS=5");
  EXPECT_EQ(Macro("YPOS")->Value, "YPOS=6");
  EXPECT_FALSE(IsRead([this] { EXPECT_EQ(Macro("YPOS")->Value, "YPOS=6"); }));
  EXPECT_EQ(Lens(), 1);
}

TEST_F(Snapshots, OfMoreThan512LogsThoseThatAPassDidNotUseAreForgotten) {
  for (int count = 0; count < 513; ++count)
    machine.Put("C:\\log" + std::to_string(count) + "\\auser.txt", std::to_string(count));
  WaitFor(StampOf(machine, "C:\\log512\\auser.txt").changed_ns);
  const auto number = [this](int log) {
    const SnapshotCache::Pass pass(cache);
    EXPECT_EQ(cache.Log("C:\\", "log" + std::to_string(log)).Number("auser.txt", 0), log);
  };
  for (const int count : {512, 513}) {
    {
      const SnapshotCache::Pass pass(cache);
      for (int log = 0; log < count; ++log) number(log);
    }
    EXPECT_FALSE(IsRead([&] { number(7); })) << "the pass before has used it";
    EXPECT_FALSE(IsRead([&] { number(7); }));
    EXPECT_EQ(IsRead([&] { number(8); }), count > 512);
  }
}

TEST_F(Snapshots, RapidChangesOfTheSameSizeAreAllSeen) {
  for (int i = 0; i < 300; ++i) {
    const std::string digit(1, static_cast<char>('1' + i % 9));
    machine.Put(kIni, "[OPTION]\r\nLENS=" + digit + "\r\n");
    machine.Put(kNumbers, digit);
    machine.Put(kMacro, "XPOS=" + digit + "\r\n");
    ASSERT_EQ(Lens(), i % 9 + 1);
    ASSERT_EQ(Number(0), i % 9 + 1);
    ASSERT_EQ(Macro("XPOS")->Value, "XPOS=" + digit);
  }
}

TEST_F(Snapshots, AnotherFileUnderTheSameNameIsReadEvenWithEqualTimes) {
  machine.Put(kNumbers, "1");
  machine.Put("C:\\log\\other.txt", "2");
  Age();
  EXPECT_EQ(Number(0), 1);
  const auto time = fs::last_write_time(machine.Native(kNumbers));
  fs::rename(machine.Native("C:\\log\\other.txt"), machine.Native(kNumbers));
  fs::last_write_time(machine.Native(kNumbers), time);
  EXPECT_EQ(Number(0), 2);
}

TEST_F(Snapshots, AMacroFileTooLargeToKeepGivesEachOfItsLines) {
  const std::string filler(200 * 1024, 'a');
  machine.Put(kMacro, filler + "\r\nXPOS=5\r\nYPOS=6\r\n");
  Age();
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(Macro("XPOS")->Value, "XPOS=5");
    EXPECT_EQ(Macro("YPOS")->Value, "YPOS=6");
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
      Lens();
      EXPECT_EQ(told, 1);
    }
    Date();
    EXPECT_EQ(told, 1) << "it has that file already";
    Number(2);
    EXPECT_EQ(told, 2);
  }
  Lens();
  EXPECT_EQ(told, 2);
}

}  // namespace
}  // namespace logbook
