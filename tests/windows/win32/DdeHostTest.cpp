// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the host and the logbook tell each other.

#include <gtest/gtest.h>
#include <windows.h>

#include <sddl.h>

#include <chrono>
#include <filesystem>

#include "win32/LogbookAtHost.h"

namespace fs = std::filesystem;

namespace logbook::windows_test {
namespace {

class DdeHostTest : public LogbookAtHost {
 protected:
  static std::string LogbookProgram() { return BesideThisProgram("logbook.exe"); }
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

// The system makes no name of it, and without a name any host would be asked.
TEST_F(DdeHostTest, AnIdThatIsTooLongForDdeReachesNoHost) {
  DdeHost host("HOST", Items());
  Program logbook(LogbookProgram(), std::string(300, 'X') + " AutoRec");
  ASSERT_TRUE(host.RunUntil([&] { return !logbook.Runs(); }));
  EXPECT_EQ(host.Requests().size(), 0u);
}

// The workstation's own drives stand in the host's answers.
TEST_F(DdeHostTest, WithoutAHomeItWorksOnTheDrivesOfTheMachine) {
  SetEnvironmentVariableA("LOGBOOK_HOME", nullptr);
  const std::string real = fs::path(disk.home()).make_preferred().string() + "\\real\\";
  fs::create_directories(real + "inst1");
  std::map<std::string, std::string> items = Items();
  items["_exepath$"] = real;
  items["_instpath$"] = real + "inst1\\";
  DdeHost host("HOST", items);
  Program logbook(LogbookProgram(), "HOST AutoRec");
  ASSERT_TRUE(host.RunUntil([&] { return host.HasToldAll(); }));
  ASSERT_TRUE(host.RunUntil([&] { return host.FollowCell(); }));
  ASSERT_TRUE(host.RunUntil([&] { return !logbook.Runs(); },
                            [&](const std::string& text) {
                              if (text == "1" || text == "9") host.WriteCell("0");
                            }));
  EXPECT_TRUE(fs::exists(real + "logbook.ini"));
  EXPECT_TRUE(fs::exists(real + "inst1\\maintain\\listlog.csv"));
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

// One that another user runs, whose mutex may not even be opened, is another one all the same.
TEST_F(DdeHostTest, ANameThatCannotBeHadBelongsToAnotherOne) {
  SECURITY_ATTRIBUTES of_another = {sizeof of_another, nullptr, FALSE};
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(
      "D:P(A;;GA;;;SY)", SDDL_REVISION_1, &of_another.lpSecurityDescriptor, nullptr));
  const HANDLE mutex = CreateMutexA(&of_another, FALSE, "Local\\com.norvane.Quorex.Logbook");
  ASSERT_NE(mutex, nullptr);
  {
    DdeHost host("HOST", Items());
    Program logbook(LogbookProgram(), "HOST AutoRec");
    EXPECT_TRUE(host.RunUntil([&] { return !logbook.Runs(); }));
    EXPECT_EQ(host.Requests().size(), 0u);
  }
  CloseHandle(mutex);
  LocalFree(of_another.lpSecurityDescriptor);
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

TEST_F(DdeHostTest, ATuneReportIsPrintedByTheHost) {
  AddLog("26111500");
  Start();
  const HWND viewer = View();
  Click(viewer, kTune);
  Click(viewer, kViewerPrint);
  WaitFor("the job", [&] { return !host().Heard().empty(); });
  EXPECT_EQ(host().Heard(), std::vector<std::string>{"2"});
  EXPECT_EQ(FolderOfJob(), kLogRoot + std::string("26111500\\"));
  EXPECT_EQ(disk.Get(kLogRoot + std::string("26111500\\tune.bin")),
            disk.Get(TEST_DATA_DIR "/reports/plain/tune.bin"));
  EXPECT_EQ(host().ReadCell(), "2");
  EXPECT_TRUE(host().WriteCell("0"));

  Click(viewer, kViewerExit);
  WaitFor("the end of the viewer", [&] { return IsWindowEnabled(main()) && !IsWindow(viewer); });
  EXPECT_EQ(host().ReadCell(), "0");
  Exit();
  EXPECT_EQ(host().Heard(), (std::vector<std::string>{"2", "0", "9", "0"}));
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
  const auto waited = steady_clock::now() - asked;
  EXPECT_GE(waited, std::chrono::milliseconds(4500));
  // The rest is for a slow machine: a limit of half a minute, as others are, would still be seen.
  EXPECT_LT(waited, std::chrono::seconds(25));
  EXPECT_EQ(deaf.Requests(), std::vector<std::string>{"_exepath$"});
  EXPECT_FALSE(disk.Has("C:\\QUOREX\\inst1\\maintain"));
}

}  // namespace
}  // namespace logbook::windows_test
