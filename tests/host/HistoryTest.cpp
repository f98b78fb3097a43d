// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/History.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/Profile.h"
#include "support/TestMachine.h"

namespace logbook::host {
namespace {

namespace fs = std::filesystem;

const std::string kRoot = "C:\\QUOREX\\inst1\\maintain\\";

class Filled {
 public:
  explicit Filled(int code_page = 1252) { MakeWorkstation(home_.home(), {code_page, {}}); }

  std::vector<std::string> Fill(int logs, std::uint64_t seed = 1,
                                const std::string& until = "2026-11-15") {
    return MakeHistory(OpenWorkstation(home_.home()),
                       {{ParseBuild("trz-ce"), seed}, logs, *ParseTime(until), {}, 0});
  }
  std::string DateOf(const std::string& name) const {
    return GetPrivateProfileString(home_, "LogFile", "Date", "", 260,
                                   kRoot + name + "\\logfile.ini");
  }
  // Every file of the logs with its bytes.
  std::map<std::string, std::string> Bytes() const {
    std::map<std::string, std::string> bytes;
    const fs::path root = home_.Native(kRoot);
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      if (!entry.is_regular_file()) continue;
      const std::string relative = fs::relative(entry.path(), root).string();
      bytes[relative] = home_.Get(kRoot + relative);
    }
    return bytes;
  }
  const test::TestMachine& home() const { return home_; }

 private:
  test::TestMachine home_;
};

// A date text as one that sorts.
std::string Sortable(const std::string& date) {
  return date.substr(6, 4) + date.substr(0, 2) + date.substr(3, 2) + date.substr(11);
}

TEST(History, FolderNamesAreTheDayAndARunningNumber) {
  Filled filled;
  const auto names = filled.Fill(80);
  ASSERT_EQ(names.size(), 80u);
  EXPECT_EQ(names.back().substr(0, 6), "261115") << "the last one is made on the day asked for";
  std::map<std::string, int> of_day;
  for (const std::string& name : names) {
    ASSERT_EQ(name.size(), 8u);
    const std::string date = filled.DateOf(name);
    EXPECT_EQ(name.substr(0, 6), date.substr(8, 2) + date.substr(0, 2) + date.substr(3, 2));
    EXPECT_EQ(name.substr(6), "0" + std::to_string(of_day[name.substr(0, 6)]++)) << name;
  }
  EXPECT_LT(of_day.size(), 80u) << "some days have two logs";
  EXPECT_GT(of_day.size(), 50u);
}

TEST(History, DatesRiseFromLogToLog) {
  Filled filled;
  std::string before;
  for (const std::string& name : filled.Fill(120)) {
    const std::string now = Sortable(filled.DateOf(name));
    EXPECT_GT(now, before) << name;
    before = now;
  }
}

TEST(History, NothingIsMadeLaterThanTheMomentAskedFor) {
  for (const std::string until : {"2026-11-15T00:05:00", "2026-11-15T08:30:00"}) {
    Filled filled;
    const std::string last = Sortable(filled.DateOf(filled.Fill(9, 4, until).back()));
    EXPECT_LE(last, "20261115" + until.substr(11)) << until;
    EXPECT_EQ(last.substr(0, 8), "20261115");
  }
}

TEST(History, DescriptorIsLaidOutAsARecordingLeavesIt) {
  Filled filled;
  const std::string name = filled.Fill(13).back();
  const std::string text = filled.home().Get(kRoot + name + "\\logfile.ini");
  const std::string date = filled.DateOf(name);
  EXPECT_EQ(text.rfind("[LogFile]\r\nDate=" + date + "\r\n[OPTION]\r\nLENS=1\r\nLENS2=1\r\n", 0),
            0u)
      << text;
  EXPECT_NE(text.find("COLOPGS=0\r\n[Maintenance]\r\nItem0=1\r\nItem1=1\r\nItem2=1\r\nItem3=0\r\n"),
            std::string::npos)
      << "log 12 is due for cones: " << text;
  EXPECT_EQ(text.substr(text.size() - 10), "Item17=0\r\n");
}

TEST(History, EveryLogHasAllFiles) {
  Filled filled;
  for (const std::string& name : filled.Fill(3)) {
    for (const SnapshotFile& file : MakeSnapshot({})) {
      EXPECT_TRUE(filled.home().Has(kRoot + name + "\\" + file.name)) << file.name;
    }
    EXPECT_TRUE(filled.home().Has(kRoot + name + "\\comment.txt"));
  }
}

TEST(History, SameSeedGivesTheSameBytes) {
  Filled one, two, three;
  one.Fill(6, 5);
  two.Fill(6, 5);
  three.Fill(6, 6);
  EXPECT_EQ(one.Bytes(), two.Bytes());
  EXPECT_NE(one.Bytes(), three.Bytes());
}

TEST(History, GoesOnWhereTheWorkstationStandsAndTouchesNoLog) {
  Filled filled;
  filled.Fill(5);
  const auto before = filled.Bytes();
  const auto names = filled.Fill(5);
  auto after = filled.Bytes();
  for (const auto& [name, bytes] : before) EXPECT_EQ(after[name], bytes) << name;
  EXPECT_EQ(LogCountIn(filled.home(), kRoot), 10);
  Filled whole;
  const auto all = whole.Fill(10);
  EXPECT_EQ(filled.home().Get(kRoot + names.back() + "\\aall.txt"),
            whole.home().Get(kRoot + all.back() + "\\aall.txt"))
      << "both are log 9 of the instrument";
}

TEST(History, TakesTheFirstFreeNumberOfTheDay) {
  Filled filled;
  for (const std::string name : {"26111500", "26111501", "26111503"}) {
    filled.home().MakeFolders(kRoot + name);
  }
  EXPECT_EQ(filled.Fill(1).back(), "26111502");
  EXPECT_EQ(filled.Fill(1).back(), "26111504");
}

TEST(History, RunningNumberIsHexadecimalAndADayEndsAtFF) {
  Filled filled;
  for (int n = 0; n < 10; ++n) filled.home().MakeFolders(kRoot + "2611150" + std::to_string(n));
  EXPECT_EQ(filled.Fill(1).back(), "2611150A");
  for (int n = 0; n < 256; ++n) {
    const std::string digits = "0123456789ABCDEF";
    const auto number = static_cast<std::size_t>(n);
    filled.home().MakeFolders(kRoot + "261115" + digits[number / 16] + digits[number % 16]);
  }
  EXPECT_THROW(filled.Fill(1), std::runtime_error);
}

TEST(History, CommentsAreInTheMachinesCodePage) {
  Filled filled(932);
  const std::string name = filled.Fill(13).back();
  const std::string bytes = filled.home().Get(kRoot + name + "\\comment.txt");
  const std::string text = CodePage::Find(932)->ToUtf8(bytes);
  EXPECT_EQ(text.rfind("Cones changed", 0), 0u) << text;
  EXPECT_NE(text.find("コーン"), std::string::npos) << text;
  EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n");
}

TEST(History, LastTicksAreOfferedToTheNextRecord) {
  Filled filled;
  const std::string name = filled.Fill(13).back();
  const std::string profile = "C:\\QUOREX\\qrxexe\\logbook.ini";
  EXPECT_EQ(GetPrivateProfileInt(filled.home(), "Maintenance", "Item2", 7, profile), 1);
  EXPECT_EQ(GetPrivateProfileInt(filled.home(), "Maintenance", "Item3", 7, profile), 0);
  EXPECT_EQ(GetPrivateProfileString(filled.home(), "LogBook", "LastFile", "", 260, profile),
            kRoot + name + "\\");
}

TEST(Calendar, ReadsDatesAndRefusesDaysThatAreNone) {
  EXPECT_EQ(LogFileDate(*ParseTime("2026-11-15")), "11/15/2026 17:00:00");
  EXPECT_EQ(LogFileDate(*ParseTime("2100-01-01T05:09:59")), "01/01/2100 05:09:59");
  EXPECT_EQ(FolderDate(*ParseTime("2100-01-01")), "000101");
  EXPECT_EQ(FolderDate(*ParseTime("2024-02-29")), "240229");
  for (const std::string text : {"", "2026", "2026-13-01", "2026-02-29", "2026-00-10", "2026-1-1",
                                 "2026-11-15 10:00:00", "2026-11-15T25:00:00", "15.11.2026"}) {
    EXPECT_EQ(ParseTime(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace logbook::host
