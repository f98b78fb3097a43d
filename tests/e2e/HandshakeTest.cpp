// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The handshake with hosts of all kinds: one played by common bus tools that nobody here wrote,
// and one that keeps the logbook waiting. How long the logbook takes is measured by bench_wait.

#include <chrono>
#include <cstdio>
#include <fstream>

#include "CellWatch.h"
#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {
namespace {

using Words = std::vector<std::string>;

constexpr char kLogbookName[] = "com.norvane.Quorex.Logbook";
constexpr char kCellInterface[] = "com.norvane.Quorex.Cell";

class HandshakeTest : public WholeProgram {
 protected:
  std::string Run(const Words& command) {
    const auto result = RunCommand(command, work().Variables(), desktop().NewFile("tool"));
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
  }

  // Starts "gdbus monitor" on the cell. It asks the bus for signals some time after its first line,
  // so it is ready when it has heard one: the cell changes from one kind of idle to the other.
  void Listen() {
    monitor_ = std::make_unique<ChildProcess>(Words{"gdbus", "monitor", "--session", "--dest",
                                                    kLogbookName, "--object-path", "/DDELabel"},
                                              work().Variables(), desktop().NewFile("monitor"));
    CellWatch cell(desktop());
    WaitFor("gdbus to listen", [&] {
      cell.Set("0");
      cell.Set("");
      return Heard("{'Text': <''>}");
    });
  }

  bool Heard(const std::string& text) { return monitor_->Output().find(text) != std::string::npos; }

  void WaitForCell(const std::string& number) {
    WaitFor("gdbus to hear " + number, [&] { return Heard("{'Text': <'" + number + "'>}"); });
  }

  // One record and the end, with the cell written by `set`.
  void PlayTheHost(const std::function<void(const std::string&)>& set);

 private:
  std::unique_ptr<ChildProcess> monitor_;
};

void HandshakeTest::PlayTheHost(const std::function<void(const std::string&)>& set) {
  std::remove(work().machine().Native(kExePath + std::string("logbook.ini")).c_str());
  work().StartHost({"--dead"});  // answers requests and leaves the cell to the tools
  const auto logbook = work().StartLogbook({kHostId});
  MainPage main(desktop());
  Listen();

  const std::string name = PressRecord(work(), main);
  const std::string folder = kLogRoot + name + "\\";
  WaitForCell("1");
  EXPECT_EQ(work().machine().Get(kExePath + std::string("logbook.ini")),
            "[LogBook]\r\nLogFileName=" + folder + "\r\n");
  const std::string date = work().machine().Get(folder + "logfile.ini");
  work().machine().Put(folder + "logfile.ini", date + "[OPTION]\r\nLENS=2\r\n");
  work().machine().Put(folder + "auser.txt", "1,2,3\r\n");
  set("0");

  EditorPage editor(desktop(), folder);
  editor.ClickComment();
  desktop().Type("Host played by hand");
  editor.PressOK();
  desktop().WaitUntilGone(editor.window());
  WaitFor("the list", [&] {
    return work().machine().Get(kLogRoot + std::string("listlog.csv")).find(name) !=
           std::string::npos;
  });
  const auto log = work().FilesIn(folder);
  EXPECT_EQ(log.size(), 3u);
  EXPECT_EQ(log.at("comment.txt"), "Host played by hand\r\n");
  EXPECT_EQ(log.at("auser.txt"), "1,2,3\r\n");
  EXPECT_TRUE(log.at("logfile.ini").starts_with(date + "[OPTION]\r\nLENS=2\r\n[Maintenance]\r\n"));

  main.Press(MainPage::Button::kExit);
  WaitForCell("9");
  set("0");
  EXPECT_EQ(logbook->WaitForEnd(), 0);
}

TEST_F(HandshakeTest, GdbusPlaysTheHost) {
  if (!ProgramExists("gdbus")) GTEST_SKIP() << "this machine lacks gdbus";
  PlayTheHost([&](const std::string& text) {
    Run({"gdbus", "call", "--session", "--dest", kLogbookName, "--object-path", "/DDELabel",
         "--method", "org.freedesktop.DBus.Properties.Set", kCellInterface, "Text",
         "<'" + text + "'>"});
  });
}

TEST_F(HandshakeTest, BusctlPlaysTheHost) {
  if (!ProgramExists("gdbus")) GTEST_SKIP() << "this machine lacks gdbus";
  if (!ProgramExists("busctl")) GTEST_SKIP() << "this machine lacks busctl";
  PlayTheHost([&](const std::string& text) {
    Run({"busctl", "--address=" + desktop().BusAddress(), "set-property", kLogbookName, "/DDELabel",
         kCellInterface, "Text", "s", text});
  });
}

TEST_F(HandshakeTest, ToolsReadCellAndItems) {
  if (!ProgramExists("gdbus")) GTEST_SKIP() << "this machine lacks gdbus";
  if (!ProgramExists("busctl")) GTEST_SKIP() << "this machine lacks busctl";
  work().StartHost({"--dead"});
  const auto logbook = work().StartLogbook({kHostId});
  const MainPage main(desktop());
  EXPECT_EQ(Run({"gdbus", "call", "--session", "--dest", kLogbookName, "--object-path", "/DDELabel",
                 "--method", "org.freedesktop.DBus.Properties.Get", kCellInterface, "Text"}),
            "(<''>,)\n");
  EXPECT_EQ(Run({"busctl", "--address=" + desktop().BusAddress(), "get-property", kLogbookName,
                 "/DDELabel", kCellInterface, "Text"}),
            "s \"\"\n");
  const std::string host = "com.norvane.Quorex.Host.QUOREX";
  EXPECT_EQ(Run({"gdbus", "call", "--session", "--dest", host, "--object-path", "/CPWAIT",
                 "--method", "com.norvane.Quorex.Host.Request", "_exepath$"}),
            "('C:\\\\QUOREX\\\\qrxexe\\\\',)\n");
  EXPECT_EQ(Run({"busctl", "--address=" + desktop().BusAddress(), "call", host, "/CPWAIT",
                 "com.norvane.Quorex.Host", "Request", "s", "_instpath$"}),
            "s \"C:\\\\QUOREX\\\\inst1\\\\\"\n");
}

// How often the main thread of a process has gone to sleep of its own accord.
long SleepsOf(int process) {
  std::ifstream in("/proc/" + std::to_string(process) + "/status");
  long sleeps = 0;
  for (std::string word; in >> word;) {
    if (word == "voluntary_ctxt_switches:") in >> sleeps;
  }
  return sleeps;
}

// A wait that spins never goes to sleep, and one that polls wakes up hundreds of times. Others'
// load only makes sleeps longer and fewer.
void ExpectToSleep(int process, const std::string& when) {
  constexpr std::chrono::milliseconds kWatched{2000}, kLongestSleep{300};
  constexpr long kEvents = 60;  // of the windows and the bus, which end sleeps too
  const auto begin = std::chrono::steady_clock::now();
  const long before = SleepsOf(process);
  long sleeps = 0;
  auto watched = kWatched - kWatched;
  WaitFor("the logbook to sleep " + when, [&] {
    sleeps = SleepsOf(process) - before;
    watched = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begin);
    return watched >= kWatched && sleeps >= kWatched / kLongestSleep;
  });
  EXPECT_LE(sleeps, watched / kLongestSleep + kEvents) << when;
}

TEST_F(HandshakeTest, WaitingForABusyHostSleeps) {
  CellWatch cell(desktop());
  work().StartHost({"--dead"});
  const auto logbook = work().StartLogbook({kHostId});
  MainPage main(desktop());
  cell.Set("5");
  const std::string name = PressRecord(work(), main);
  ExpectToSleep(logbook->Id(), "before a job");
  cell.Set("0");
  cell.WaitFor("1");
  ExpectToSleep(logbook->Id(), "during the job");
  cell.Set("5");
  EditorPage editor(desktop(), kLogRoot + name + "\\");
  desktop().Key("Escape");
  desktop().WaitUntilGone(editor.window());
  main.Press(MainPage::Button::kExit);
  ExpectToSleep(logbook->Id(), "at the end");
  EXPECT_TRUE(logbook->Runs());
}

}  // namespace
}  // namespace logbook::e2e
