// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/DemonstrationRun.h"

#include <QLockFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "host/Demonstration.h"
#include "host/HostRun.h"
#include "host/Seat.h"
#include "host/Session.h"

namespace fs = std::filesystem;

namespace logbook::host {
namespace {

using Names = std::set<std::string>;

constexpr const char* kHostId = "QUOREX";
constexpr int kLooksAtOutbox = 300;
constexpr auto kBetweenLooks = std::chrono::milliseconds(100);

void Tell(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

// The files below a folder, by their paths from there.
Names FilesBelow(const fs::path& folder) {
  Names files;
  std::error_code missing;
  for (const auto& entry : fs::recursive_directory_iterator(folder, missing)) {
    if (entry.is_regular_file()) files.insert(entry.path().lexically_relative(folder).string());
  }
  return files;
}

Names FoldersIn(const fs::path& folder) {
  Names folders;
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(folder, missing)) {
    if (entry.is_directory()) folders.insert(entry.path().filename().string());
  }
  return folders;
}

Names Added(const Names& before, const Names& after) {
  Names added;
  std::ranges::set_difference(after, before, std::inserter(added, added.end()));
  return added;
}

// Asks at the terminal; only a word that begins with y or Y means yes.
bool Agreed(const std::string& question) {
  std::printf("%s [y/N] ", question.c_str());
  std::fflush(stdout);
  std::string answer;
  std::getline(std::cin, answer);
  return !answer.empty() && (answer.front() == 'y' || answer.front() == 'Y');
}

bool MayThrowAway(const Demonstration& demonstration, bool unasked) {
  if (unasked) return true;
  const std::string what = "the demonstration in " + demonstration.Home() + " with its " +
                           std::to_string(demonstration.LogCount()) + " logs";
  if (CanAsk()) return Agreed("Throw away " + what + "?");
  throw std::runtime_error("--fresh would throw away " + what + "; --yes agrees to that");
}

// Two at once would throw away what the other one is making, and both want the host's name.
void BeAlone(QLockFile& lock, const Demonstration& demonstration) {
  std::error_code told_by_those_who_write;
  fs::create_directories(fs::path(demonstration.Home()).parent_path(), told_by_those_who_write);
  lock.setStaleLockTime(0);  // one that was killed holds nothing
  if (!lock.tryLock() && lock.error() == QLockFile::LockFailedError)
    throw std::runtime_error("the demonstration in " + demonstration.Home() +
                             " is running already");
  HostOptions host;
  host.id = kHostId;
  host.workstation = OpenWorkstation(demonstration.Home());
  if (!MakeSeat(host, {})->IsTaken()) return;
  throw std::runtime_error("another host is running in this session as " + host.id +
                           "; end its logbook first");
}

void RequireCodePage(const Demonstration& demonstration, int number) {
  const int own = OpenWorkstation(demonstration.Home()).machine.code_page->Number();
  if (own == number) return;
  throw std::runtime_error("the demonstration in " + demonstration.Home() + " has code page " +
                           std::to_string(own) + "; --fresh makes a new one");
}

// False if an older one is to stay although a new one was asked for.
bool Prepare(const Demonstration& demonstration, const DemonstrationOptions& options) {
  demonstration.Mend();
  const bool exists = demonstration.Exists();
  if (exists && !options.fresh && options.code_page)
    RequireCodePage(demonstration, *options.code_page);
  if (exists && options.fresh && !MayThrowAway(demonstration, options.unasked)) return false;
  if (!exists || options.fresh) {
    Tell("Making the demonstration workstation in " + demonstration.Home() + " ...");
    demonstration.Make(options.build.value_or(ParseBuild(kDemonstrationBuild)), options.code_page,
                       options.manual);
  }
  demonstration.Equip(options.programs, options.manual);
  return true;
}

HostOptions OptionsOfHost(const Demonstration& demonstration, const DemonstrationOptions& options) {
  HostOptions host;
  host.id = kHostId;
  host.workstation = OpenWorkstation(demonstration.Home());
  host.instrument = InstrumentOf(host.workstation);
  if (options.build) host.instrument.build = *options.build;
  host.start_logbook = demonstration.Application() + "/logbook";
  host.ce = options.ce;
  host.auto_rec = options.auto_rec;
  return host;
}

// The agent's own report about its outbox; true if nothing waits in it.
bool OutboxIsEmpty(const Demonstration& demonstration, std::string& report) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("LOGBOOK_HOME"), QString::fromStdString(demonstration.Home()));
  QProcess agent;
  agent.setProcessEnvironment(environment);
  agent.start(QString::fromStdString(demonstration.Application() + "/ecm-agent"),
              {QStringLiteral("--status")});
  agent.waitForFinished();
  report = agent.readAllStandardOutput().toStdString();
  return agent.exitStatus() == QProcess::NormalExit && agent.exitCode() == 0;
}

void AwaitArrival(const Demonstration& demonstration) {
  std::string report;
  for (int look = 0; look < kLooksAtOutbox; ++look) {
    if (OutboxIsEmpty(demonstration, report)) return;
    std::this_thread::sleep_for(kBetweenLooks);
  }
  throw std::runtime_error("the new log has not arrived at the content server:\n" + report);
}

void TellFiles(const Names& names) {
  for (const std::string& name : names) Tell("             " + name);
}

// The columns of a terminal that a text takes; letters of the far east are two wide.
std::size_t ColumnsOf(std::string_view text) {
  std::size_t columns = 0;
  for (const char byte : text) {
    const auto lead = static_cast<unsigned char>(byte);
    if (lead < 0x80 || lead >= 0xC0) columns += lead >= 0xE1 ? 2 : 1;
  }
  return columns;
}

// Lines too long for a terminal go on in the next one, behind a comma.
void TellFolded(const std::string& line) {
  constexpr std::size_t kColumns = 80;
  std::string part = "  ";
  bool has_field = false;
  for (std::size_t from = 0; from < line.size();) {
    const std::size_t comma = std::min(line.find(',', from), line.size() - 1);
    const std::string field = line.substr(from, comma + 1 - from);
    if (has_field && ColumnsOf(part) + ColumnsOf(field) > kColumns) {
      Tell(part);
      part = "      ";
    }
    part += field;
    has_field = true;
    from = comma + 1;
  }
  Tell(part);
}

// A line in the workstation's code page as a terminal may have it: what would steer it is replaced.
std::string Visible(const CodePage& page, const std::string& line) {
  std::string text = page.ToUtf8(line);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool is_high =
        byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    if (is_high) text.erase(i, 1);
    if (is_high || byte < 0x20 || byte == 0x7F) text[i] = '?';
  }
  return text;
}

void TellList(const CodePage& page, const fs::path& list) {
  Tell("\nThe list of logs, as the logbook has written it (long lines folded):\n");
  std::ifstream file(list, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (line.ends_with('\r')) line.pop_back();
    TellFolded(Visible(page, line));
  }
}

int RecordByItself(const Demonstration& demonstration, const HostOptions& host,
                   const EndSignal& end_signal) {
  const Names logs = FoldersIn(demonstration.LogRoot());
  const Names arrived = FilesBelow(demonstration.ContentServer());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  if (RunHost(host, end_signal) != 0) throw std::runtime_error("the automatic record failed");
  const Names fresh = Added(logs, FoldersIn(demonstration.LogRoot()));
  if (fresh.empty()) throw std::runtime_error("the automatic record left no log");
  TellList(*host.workstation.machine.code_page, demonstration.LogRoot() + "/listlog.csv");
  for (const std::string& log : fresh) {
    Tell("\nNew log    " + demonstration.LogRoot() + "/" + log);
    TellFiles(FilesBelow(demonstration.LogRoot() + "/" + log));
  }
  AwaitArrival(demonstration);
  if (demonstration.IsTiedToFolder()) {
    Tell("Package    " + demonstration.ContentServer());
    TellFiles(Added(arrived, FilesBelow(demonstration.ContentServer())));
  }
  Tell("All logs   " + demonstration.LogRoot());
  Tell("List       " + demonstration.LogRoot() + "/listlog.csv");
  Tell("Settings   " + demonstration.Application());
  return 0;
}

void TellWhatToPress(const Demonstration& demonstration) {
  Tell("The logbook starts. \"Record Log\" makes a record; \"Exit\" ends logbook and host.");
  Tell("The logs lie in " + demonstration.LogRoot());
  if (!demonstration.IsTiedToFolder()) return;
  Tell(
      "Each new log, changed list and print image (PDF) also arrives at the workstation's content\n"
      "server, which is " +
      demonstration.ContentServer());
}

}  // namespace

int RunDemonstration(const DemonstrationOptions& options, const EndSignal& end_signal) {
  const Demonstration demonstration(options.folder);
  QLockFile lock(QString::fromStdString(demonstration.Home() + ".lock"));
  BeAlone(lock, demonstration);
  if (!Prepare(demonstration, options)) {
    Tell("It stays as it is.");
    return 1;
  }
  const HostOptions host = OptionsOfHost(demonstration, options);
  if (options.auto_rec) return RecordByItself(demonstration, host, end_signal);
  TellWhatToPress(demonstration);
  return RunHost(host, end_signal);
}

}  // namespace logbook::host
