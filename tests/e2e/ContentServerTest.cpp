// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Uploads from the click to the file at the content server, with the real programs: the logbook
// stages, the agent that it starts delivers, and the server may be out of reach meanwhile.

#include "ContentServer.h"

#include <signal.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Pages.h"
#include "Workplace.h"

namespace fs = std::filesystem;

namespace logbook::e2e {
namespace {

using Button = MainPage::Button;

constexpr char kPdfFolder[] = "C:\\QUOREX\\PDF\\";
constexpr char kFolder[] = "maintenance/station 7";

class ContentServerTest : public ReadableProgram, public testing::WithParamInterface<ServerKind> {
 protected:
  void SetUp() override {
    ReadableProgram::SetUp();
    if (IsSkipped()) return;
    const std::string missing = MissingFor(GetParam());
    if (!missing.empty()) GTEST_SKIP() << "this machine lacks " << missing;
    for (const char* proxy : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
      unsetenv(proxy);
    work().RunHost({"fill", "--logs", "2", "--until", "2026-06-30"});
    std::ofstream(work().machine().home() + "/machine.reg", std::ios::app)
        << "\"DefaultPrinter\"=\"PDF\"\r\n";
    for (const std::string program : {LOGBOOK_PROGRAM, ECM_AGENT})
      fs::copy_file(program, Application() / fs::path(program).filename());
    server_ = MakeContentServer(GetParam(), desktop().Folder());
    work().machine().Put(kExePath + std::string("arecm.cfg"),
                         "[Content Server]\r\nRetryPause=100\r\nLongestPause=500\r\nFolder=" +
                             std::string(kFolder) + "\r\n" + server_->Settings());
  }

  void TearDown() override {
    KillAgents();
    ReadableProgram::TearDown();
  }

  // The workstation's own programs, with their configuration beside them.
  fs::path Application() { return work().machine().Native(kExePath); }

  void StartLogbook() {
    work().StartHost({"--start-logbook", Application() / "logbook"});
    main_ = std::make_unique<MainPage>(desktop());
  }
  void ExitLogbook() {
    main_->Press(Button::kExit);
    EXPECT_EQ(work().host().WaitForEnd(), 0);
  }

  CommandResult Status() {
    return RunCommand({Application() / "ecm-agent", "--status"}, work().Variables(),
                      desktop().NewFile("status"));
  }
  void WaitForStatus(const std::string& text) {
    WaitFor("the status \"" + text + "\"",
            [&] { return Status().output.find(text) != std::string::npos; });
  }
  void WaitUntilAllIsSent() {
    WaitFor("the outbox to be empty", [&] { return Status().status == 0; });
    EXPECT_NE(Status().output.find("Waiting: 0\n"), std::string::npos);
  }

  // The agents of this workstation that run now.
  std::vector<int> Agents() {
    const fs::path program = Application() / "ecm-agent";
    std::vector<int> ids;
    for (const auto& entry : fs::directory_iterator("/proc")) {
      std::error_code gone;
      if (fs::read_symlink(entry.path() / "exe", gone) == program)
        ids.push_back(std::stoi(entry.path().filename().string()));
    }
    return ids;
  }
  void KillAgents() {
    for (const int id : Agents()) kill(id, SIGKILL);
    WaitFor("the agent to end", [&] { return Agents().empty(); });
  }

  std::string Get(const std::string& path) { return work().machine().Get(path); }
  static std::string Described(const std::string& name, const std::string& source,
                               const std::string& reason) {
    const std::string last = source.substr(source.rfind('\\') + 1);
    return name + "|" + source + "|" + last + "|" + reason + "|Operator";
  }
  void ExpectListWith(Upload upload, const std::string& reason) {
    upload.described.push_back(Described("listlog.csv", "C:\\QUOREX\\inst1\\maintain", reason));
    upload.files.push_back(FileLine("listlog.csv", Get(kLogRoot + std::string("listlog.csv"))));
    expected_.push_back(upload);
  }

  // Makes a record; the name of its log.
  std::string Record() {
    const std::string name = PressRecord(work(), *main_);
    EditorPage editor(desktop(), kLogRoot + name + "\\");
    editor.Tick(2);
    editor.PressOK();
    desktop().WaitUntilGone(editor.window());
    WaitForButton("Record Log");
    const std::string reason = "Maintenance Log has been recorded.";
    Upload upload{{Described(name + ".qkvzip", "C:\\QUOREX\\inst1\\maintain", reason)}, {}};
    for (const auto& [file, bytes] : work().FilesIn(kLogRoot + name))
      upload.files.push_back(FileLine(name + ".qkvzip/" + name + "/" + file, bytes));
    ExpectListWith(upload, reason);
    EXPECT_FALSE(work().machine().Has(kLogRoot + name + ".qkvzip")) << "the package stays";
    return name;
  }

  void Delete(const std::string& log) {
    ClickRow(log);
    main_->Press(Button::kDelete);
    MessagePage(desktop(), *main_).Yes();
    WaitFor("the log to leave the list", [&] {
      return Get(kLogRoot + std::string("listlog.csv")).find(log) == std::string::npos;
    });
    ExpectListWith({}, "Maintenance Log has been deleted.");
  }

  void ExpectPrintImage(const std::string& name) {
    WaitFor(name, [&] { return work().machine().Has(kPdfFolder + name); });
    const std::string bytes = Get(kPdfFolder + name);
    EXPECT_TRUE(bytes.starts_with("%PDF-") && bytes.ends_with("%%EOF\n")) << name;
    expected_.push_back(
        {{Described(name, "C:\\QUOREX\\PDF", "Maintenance LogBook has been printed.")},
         {FileLine(name, bytes)}});
  }

  void PrintList() {
    main_->Press(Button::kPrint);
    ExpectPrintImage("Logbook_List.pdf");
  }

  void PrintReport(const std::string& log) {
    const std::string ini = Get(kLogRoot + log + "\\logfile.ini");
    const std::size_t date = ini.find("Date=") + 5;
    desktop().DoubleClickScreen(Row(log).place.Middle());
    const WindowId viewer = desktop().WaitForWindow(
        "Logbook Viewer:" + ini.substr(date, ini.find("\r\n", date) - date));
    desktop().Key("alt+v");
    WaitFor("the report", [&] { return work().machine().Has(kLogRoot + log + "\\meter.rpt"); });
    desktop().ClickScreen(reader().WaitFor("push button", "Print").place.Middle());
    ExpectPrintImage(log + "_meter.rpt.pdf");
    desktop().Key("Escape");
    desktop().WaitUntilGone(viewer);
  }

  // Every event has arrived, each file once and whole, and nothing else has.
  void ExpectAllArrived() {
    std::sort(expected_.begin(), expected_.end());
    const auto arrived =
        ReadUploads(server().Root() + "/" + kFolder, desktop().NewFile("unpacked"));
    ASSERT_EQ(arrived.size(), expected_.size());
    for (std::size_t i = 0; i < arrived.size(); ++i) {
      EXPECT_EQ(arrived[i].described, expected_[i].described);
      EXPECT_EQ(arrived[i].files, expected_[i].files);
    }
    WaitFor("the agent to end by itself", [&] { return Agents().empty(); });
  }

  ContentServer& server() { return *server_; }

 private:
  std::unique_ptr<ContentServer> server_;
  std::unique_ptr<MainPage> main_;
  std::vector<Upload> expected_;
};

TEST_P(ContentServerTest, RecordDeletionListAndReportEachArriveOnceAndWhole) {
  server().Start();
  StartLogbook();
  const std::string oldest = work().Logs().front();
  Record();
  PrintReport(work().Logs().back());
  Delete(oldest);
  PrintList();
  Record();
  ExitLogbook();
  WaitUntilAllIsSent();
  ExpectAllArrived();
}

TEST_P(ContentServerTest, WhatHappensWhileTheServerIsDownArrivesWhenItIsBack) {
  StartLogbook();
  const std::string log = Record();
  WaitForStatus(server().OutOfReach());
  PrintList();
  WaitForStatus("Waiting: 2\n");
  const CommandResult status = Status();
  EXPECT_EQ(status.status, 1);
  for (const std::string& text :
       {"  Files: " + log + ".qkvzip listlog.csv\n", std::string("  Files: Logbook_List.pdf\n"),
        std::string("Agent: at work\n"), server().OutOfReach()}) {
    EXPECT_NE(status.output.find(text), std::string::npos) << status.output;
  }
  server().Start();
  WaitUntilAllIsSent();
  ExpectAllArrived();
  ExitLogbook();
}

TEST_P(ContentServerTest, ANewStartOfTheLogbookSendsWhatWaits) {
  server().Start();
  StartLogbook();
  Record();
  WaitUntilAllIsSent();
  server().Stop();
  Delete(work().Logs().front());
  WaitForStatus(server().OutOfReach());
  ExitLogbook();
  KillAgents();
  server().Start();
  WaitForStatus("Agent: not running\nWaiting: 1\n");
  StartLogbook();
  WaitUntilAllIsSent();
  ExpectAllArrived();
}

INSTANTIATE_TEST_SUITE_P(At, ContentServerTest,
                         testing::Values(ServerKind::kSharedFolder, ServerKind::kHttps),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace logbook::e2e
