// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The real logbook.exe, which lies beside this program, with a host that speaks DDE.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "support/TestMachine.h"
#include "win32/DdeHost.h"

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

constexpr char kSettings[] = "C:\\QUOREX\\qrxexe\\logbook.ini";
constexpr char kLogRoot[] = "C:\\QUOREX\\inst1\\maintain\\";

std::string LogbookProgram() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, sizeof path);
  return (fs::path(path).parent_path() / "logbook.exe").string();
}

class DdeHostTest : public testing::Test {
 protected:
  DdeHostTest() {
    disk.MakeFolders("C:\\QUOREX\\qrxexe");
    disk.MakeFolders("C:\\QUOREX\\inst1");
    SetEnvironmentVariableA("LOGBOOK_HOME", disk.home().c_str());
  }
  static std::map<std::string, std::string> Items() {
    return {{"_exepath$", "C:\\QUOREX\\qrxexe\\"},
            {"_instpath$", "C:\\QUOREX\\inst1\\"},
            {"_helppath$", "C:\\QUOREX\\help\\"},
            {"_helpfile$", "quorex.chm"}};
  }
  // The folder that the logbook hands over, as a path text.
  std::string FolderOfJob() const {
    const std::string settings = disk.Get(kSettings);
    const std::string key = "LogFileName=";
    const std::size_t begin = settings.find(key) + key.size();
    return settings.substr(begin, settings.find("\r\n", begin) - begin);
  }
  // What a host leaves in a log folder.
  void WriteSnapshot(const std::string& folder) const {
    for (const auto& entry : fs::directory_iterator(fs::path(TEST_DATA_DIR) / "snapshots/plain"))
      fs::copy(entry.path(), fs::path(disk.Native(folder)) / entry.path().filename(),
               fs::copy_options::overwrite_existing);
  }
  std::vector<std::string> Logs() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(disk.Native(kLogRoot)))
      if (entry.is_directory()) names.push_back(entry.path().filename().string());
    return names;
  }

  test::TestMachine disk;
};

TEST_F(DdeHostTest, AnAutomaticRecordGoesFromTheRequestsToTheNine) {
  DdeHost host("HOST", Items());
  Program logbook(LogbookProgram(), "HOST AutoRec");
  std::vector<std::string> jobs;
  ASSERT_TRUE(host.RunUntil([&] { return host.HasToldAll(); }));
  ASSERT_TRUE(host.RunUntil([&] { return host.FollowCell(); }));
  const bool ended = host.RunUntil([&] { return !logbook.Runs(); },
                                   [&](const std::string& text) {
                                     if (text.empty() || text == "0") return;
                                     jobs.push_back(text);
                                     if (text == "1") WriteSnapshot(FolderOfJob());
                                     host.WriteCell("0");
                                   });
  ASSERT_TRUE(ended);
  EXPECT_EQ(logbook.Status(), 0u);
  EXPECT_EQ(host.Requests(),
            (std::vector<std::string>{"_exepath$", "_instpath$", "_helppath$", "_helpfile$"}));
  EXPECT_EQ(jobs, (std::vector<std::string>{"1", "9"}));
  ASSERT_EQ(Logs().size(), 1u);
  EXPECT_EQ(FolderOfJob(), kLogRoot + Logs()[0] + "\\");
  EXPECT_NE(disk.Get(kLogRoot + std::string("listlog.csv")).find(Logs()[0]), std::string::npos);
  EXPECT_TRUE(disk.Has(kLogRoot + Logs()[0] + "\\comment.txt"));
}

// As shells and toolkits write the command line.
TEST_F(DdeHostTest, BlanksBehindTheNameOfTheProgramAreNoPartOfTheHostsId) {
  DdeHost host("HOST", Items());
  Program logbook(LogbookProgram(), " \t HOST");
  ASSERT_TRUE(host.RunUntil([&] { return host.Requests().size() == 4; }));
  EXPECT_TRUE(logbook.Runs());
}

TEST_F(DdeHostTest, WithoutAHostItEndsAndLeavesNothing) {
  DdeHost other("OTHER", Items());
  Program logbook(LogbookProgram(), "HOST AutoRec");
  ASSERT_TRUE(other.RunUntil([&] { return !logbook.Runs(); }));
  EXPECT_EQ(other.Requests().size(), 0u);
  EXPECT_FALSE(disk.Has(kSettings));
  EXPECT_FALSE(disk.Has("C:\\QUOREX\\inst1\\maintain"));
}

TEST_F(DdeHostTest, ASecondOneEndsWithoutARequestAndTheFirstStays) {
  DdeHost host("HOST", Items());
  Program first(LogbookProgram(), "HOST");
  ASSERT_TRUE(host.RunUntil([&] { return host.HasToldAll(); }));
  ASSERT_TRUE(host.RunUntil([&] { return host.FollowCell(); }));
  Program second(LogbookProgram(), "HOST");
  ASSERT_TRUE(host.RunUntil([&] { return !second.Runs(); }));
  EXPECT_TRUE(first.Runs());
  EXPECT_EQ(host.Requests().size(), 4u);
  EXPECT_TRUE(host.WriteCell("7"));
  ASSERT_TRUE(host.RunUntil([&] { return host.Heard() == std::vector<std::string>{"7"}; }));
  EXPECT_EQ(host.ReadCell(), "7");
}

TEST_F(DdeHostTest, TheCellCanBeReadWrittenAndFollowed) {
  DdeHost host("HOST", Items());
  Program logbook(LogbookProgram(), "HOST");
  ASSERT_TRUE(host.RunUntil([&] { return host.HasToldAll(); }));
  ASSERT_TRUE(host.RunUntil([&] { return host.FollowCell(); }));
  EXPECT_EQ(host.ReadCell(), "");
  EXPECT_TRUE(host.WriteCell("5"));
  ASSERT_TRUE(host.RunUntil([&] { return host.Heard() == std::vector<std::string>{"5"}; }));
  EXPECT_EQ(host.ReadCell(), "5");
}

// The last one: a conversation that was held back leaves its traces in the process that held it.
TEST_F(DdeHostTest, AHostThatNeverAnswersIsWaitedForFiveSeconds) {
  using std::chrono::steady_clock;
  DdeHost deaf("HOST", Items(), DdeHost::Hearing::kDeaf);
  Program logbook(LogbookProgram(), "HOST");
  steady_clock::time_point asked;
  ASSERT_TRUE(deaf.RunUntil([&] { return !deaf.Requests().empty(); }));
  asked = steady_clock::now();
  ASSERT_TRUE(deaf.RunUntil([&] { return !logbook.Runs(); }));
  EXPECT_GE(steady_clock::now() - asked, std::chrono::milliseconds(4500));
  EXPECT_EQ(deaf.Requests(), std::vector<std::string>{"_exepath$"});
  EXPECT_FALSE(disk.Has("C:\\QUOREX\\inst1\\maintain"));
}

}  // namespace
}  // namespace logbook::windows_test
