// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "UploadStation.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <thread>

#include "loglist/LogList.h"
#include "printing/ListPrinting.h"
#include "records/LogCommands.h"
#include "records/Recording.h"
#include "upload/ECMSub.h"
#include "viewer/LogView.h"
#include "viewer/ReportPrinting.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

std::string BytesOf(const std::string& native) {
  std::ifstream in(native, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

// Waits up to a minute.
bool ComesTrue(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

}  // namespace

UploadStation::UploadStation(Agent agent)
    : client(state, agent == Agent::kStartedByClient ? ECM_AGENT : "/bin/true"),
      real{host,   cell,  events,  messages, clock, process,
           client, forms, windows, print,    help,  save} {
  state.AppPath = "C:\\QUOREX\\qrxexe";
  cell.on_written = [this](const std::string& text) {
    if (text == "1") cell.text = "0";
  };
}

void UploadStation::Configure(const std::map<std::string, std::string>& values) {
  std::string text = "[Content Server]\r\nRetryPause=50\r\nLongestPause=400\r\n";
  for (const auto& [key, value] : values) text += key + "=" + value + "\r\n";
  disk.Put("C:\\QUOREX\\qrxexe\\arecm.cfg", disk.machine().code_page->FromUtf8(text));
}

void UploadStation::Configure(const std::string& url, const std::string& user,
                              const std::string& password, const std::string& ca_file) {
  disk.Put("C:\\QUOREX\\password", password + "\n");
  chmod(disk.Native("C:\\QUOREX\\password").c_str(), 0600);
  Configure({{"Url", url},
             {"User", user},
             {"PasswordFile", "C:\\QUOREX\\password"},
             {"CaFile", ca_file},
             {"Folder", "maintenance/station 7"}});
}

void UploadStation::RememberSubmissions() {
  const Outbox outbox = TheOutbox();
  for (const std::string& submission : outbox.Waiting()) {
    const std::string path = "maintenance/station 7/" + submission;
    if (expected.contains(path + ".xml")) continue;
    for (const std::string& name : outbox.FilesOf(submission))
      expected[path + "/" + name] = BytesOf(outbox.FileOf(submission, name));
    expected[path + ".xml"] = BytesOf(outbox.DescriptorOf(submission));
  }
}

void UploadStation::Record() {
  ++clock.now.Second;
  cmdRecord_Click(state, real);
  RememberSubmissions();
}

void UploadStation::DeleteLog(int row) {
  ++clock.now.Second;
  messages.answers = {MessageAnswer::kYes};
  state.ListView1.Row(row).Selected = true;
  cmdDelete_Click(state, real);
  RememberSubmissions();
}

void UploadStation::ExpectImage(const std::string& name) {
  ++clock.now.Second;
  print.driver = "Adobe PDF Converter";
  print.image = "C:\\QUOREX\\PDF\\" + name;
  print.on_print = [this, name] { disk.Put(print.image, "%PDF-1.4 " + name); };
}

void UploadStation::PrintLogList() {
  ExpectImage("Logbook_List.pdf");
  PrintList(state, real);
  RememberSubmissions();
}

void UploadStation::PrintErrorLog(const std::string& log) {
  constexpr std::int16_t kErrorLog = 5;
  disk.Put(InLog(log, "errlog.txt"), "no error\r\n");
  ExpectImage(log + "_errlog.txt.pdf");
  LogView view;
  view.LogFolderPath = InLog(log, "");
  state.ViewMode = kErrorLog;
  cmdPrint_Click(state, real, view);
  RememberSubmissions();
}

void UploadStation::Submit(const std::string& name, const std::string& bytes) {
  disk.Put("C:\\data\\" + name, bytes);
  std::string folder;
  ASSERT_EQ(StageUploadFile(state, real, folder, "LOGBK", 4711, "C:\\data\\" + name, "why"), 0);
  std::string message;
  ASSERT_TRUE(client.EcmSubmit(folder, message)) << message;
  RememberSubmissions();
}

ProgramResult UploadStation::RunAgent(const std::string& options) const {
  return RunProgram(Quoted(ECM_AGENT) + " --home " + Quoted(disk.home()) + " --app " +
                    Quoted(disk.Native("C:\\QUOREX\\qrxexe")) + " " + options);
}

pid_t UploadStation::StartAgent() const {
  const std::string application = disk.Native("C:\\QUOREX\\qrxexe");
  const pid_t child = fork();
  if (child == 0) {
    execl(ECM_AGENT, ECM_AGENT, "--home", disk.home().c_str(), "--app", application.c_str(),
          nullptr);
    _exit(127);
  }
  return child;
}

bool UploadStation::WaitForATry() const {
  const std::string submission = TheOutbox().Waiting().at(0);
  return ComesTrue([&] { return TheOutbox().NoteOf(submission).tries > 0; });
}

bool UploadStation::WaitUntilEmpty() const {
  return ComesTrue([&] { return TheOutbox().IsEmpty(); });
}

}  // namespace logbook::test
