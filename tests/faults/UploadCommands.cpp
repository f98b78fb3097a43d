// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <filesystem>
#include <regex>
#include <utility>

#include "Commands.h"
#include "base/Files.h"
#include "loglist/LogList.h"
#include "printing/ListPrinting.h"
#include "printing/PrintBridge.h"
#include "records/LogCommands.h"
#include "records/Recording.h"
#include "upload/Delivery.h"
#include "upload/ECMSub.h"

namespace fs = std::filesystem;

namespace logbook::test {

namespace {

constexpr const char* kArea = "drives/c/Norvane.Quorex.ECM/";
constexpr const char* kPages = "%PDF-1.4 the pages of this print";
constexpr const char* kShare = "drives/c/share/station/";

bool IsPackage(const std::string& path) {
  return path.ends_with(".qkvzip");
}

bool IsHidden(const std::string& path) {
  return path.ends_with("/.hidden");
}

bool IsList(const std::string& path) {
  return path.ends_with("/listlog.csv");
}

// What is staged under its own name is a whole copy, and a descriptor a whole document. The list in
// it may be one of those that a fault has left.
bool IsWholeUpload(const std::string& path, const std::string& bytes) {
  if (IsHidden(path)) return true;  // a line that was cut short is begun anew
  if (IsPackage(path)) return !NamesInZip(bytes).empty();
  if (!path.starts_with(kArea)) return false;
  if (path.ends_with(".xml")) return bytes.starts_with("<?xml") && bytes.ends_with("</Upload>");
  if (IsList(path)) return bytes.starts_with("Date Logged,") && bytes.ends_with("\r\n");
  return bytes == kPages;
}

// A folder whose files were not handed over stays in the staging area, as the agent's status tells.
bool IsStaged(const std::string& path) {
  return path.starts_with(kArea) && !path.starts_with(std::string(kArea) + "outbox/");
}

void PutTiedLogs(Station& station) {
  PutLogs(station);
  station.disk.MakeFolders("C:\\share");
  station.TieTo("file:///C:/share");
}

// What stands in the outbox has its descriptor and each file that the descriptor names.
std::string JudgeOutbox(const Disk& disk) {
  const std::string outbox = std::string(kArea) + "outbox/";
  for (const auto& [path, bytes] : disk) {
    if (!path.starts_with(outbox) || !path.ends_with("/files/") ||
        path.find(".new/") != std::string::npos)
      continue;
    const std::string folder = path.substr(0, path.size() - 6);
    const auto descriptor = disk.find(folder + "upload.xml");
    if (descriptor == disk.end()) return folder + " has no descriptor";
    for (const char* name : {"listlog.csv", "Logbook_List.pdf"}) {
      const bool is_named = descriptor->second.find(name) != std::string::npos;
      if (is_named != disk.contains(path + name)) return path + " has not what its descriptor says";
    }
  }
  return {};
}

// The agent has brought all of the outbox to the share, each submission with all of its files.
std::string JudgeShare(const Disk& disk) {
  for (const auto& [path, bytes] : disk) {
    if (path.starts_with(std::string(kArea) + "outbox/") && path.ends_with('/') &&
        path != std::string(kArea) + "outbox/")
      return path + " still waits";
    if (!path.starts_with(kShare) || path == kShare || !path.ends_with('/')) continue;
    const auto descriptor = disk.find(path.substr(0, path.size() - 1) + ".xml");
    if (descriptor == disk.end()) return path + " has arrived without its descriptor";
    for (const char* name : {"listlog.csv", "Logbook_List.pdf"}) {
      const bool is_named = descriptor->second.find(name) != std::string::npos;
      if (is_named != disk.contains(path + name)) return path + " has not what its descriptor says";
    }
  }
  return {};
}

// What was staged without a word was handed over, too. Nothing is staged where the settings cannot
// be read, as nothing is where there are none.
std::string JudgeHandingOver(const Aftermath& after) {
  bool is_staged = false, is_handed_over = false;
  for (const auto& [path, bytes] : after.now) {
    is_staged |= IsStaged(path) && path != kArea;
    is_handed_over |= path.ends_with("/upload.xml");
  }
  const bool is_silent = after.finished && after.told.empty();
  if (is_silent && is_staged && !is_handed_over) return "nobody is told that nothing was sent";
  return JudgeOutbox(after.now);
}

// A package that goes on its way in silence has all files of its log.
std::string JudgePackages(const Aftermath& after) {
  std::size_t entries = 0;
  for (const auto& [path, bytes] : after.done) {
    if (IsPackage(path)) entries = NamesInZip(bytes).size();
  }
  for (const auto& [path, bytes] : after.now) {
    if (IsPackage(path) && after.finished && after.told.empty() &&
        NamesInZip(bytes).size() != entries)
      return path + " has not all files of the log";
  }
  return JudgeHandingOver(after);
}

void PutSubmissions(Station& station, const std::string& url) {
  station.TieTo(url);
  for (const std::string name : {"one", "two"}) {
    const std::string folder = "C:\\Norvane.Quorex.ECM\\outbox\\" + name;
    station.disk.Put(folder + "\\files\\listlog.csv", "the list of " + name + "\r\n");
    station.disk.Put(folder + "\\files\\26111500.qkvzip", std::string(70000, name[0]));
    station.disk.Put(folder + "\\upload.xml", "<Upload>" + name + "</Upload>");
  }
}

// What has to be at the server in the end, by its path there.
Disk Expected() {
  Disk files;
  for (const std::string name : {"one", "two"}) {
    files[name + "/listlog.csv"] = "the list of " + name + "\r\n";
    files[name + "/26111500.qkvzip"] = std::string(70000, name[0]);
    files[name + ".xml"] = "<Upload>" + name + "</Upload>";
  }
  return files;
}

Disk FilesAlone(const Disk& disk, const std::string& folder) {
  Disk files;
  for (const auto& [path, bytes] : disk) {
    if (path.starts_with(folder) && !path.ends_with('/')) files[path.substr(folder.size())] = bytes;
  }
  return files;
}

// Each submission is whole in the outbox, or at the server with its descriptor.
std::string JudgeSubmissions(const Disk& outbox, const Disk& server) {
  for (const std::string name : {"one", "two"}) {
    bool arrived = true, waits = true;
    for (const auto& [path, bytes] : Expected()) {
      if (!path.starts_with(name)) continue;
      const auto there = server.find(path);
      if (there != server.end() && there->second != bytes) return path + " is torn at the server";
      arrived &= there != server.end();
      const std::string kept =
          path.ends_with(".xml") ? name + "/upload.xml" : name + "/files" + path.substr(3);
      const auto here = outbox.find(kept);
      waits &= here != outbox.end() && here->second == bytes;
    }
    if (server.contains(name + ".xml") && !arrived) return name + " has arrived in part";
    if (!arrived && !waits) return name + " is lost";
  }
  return {};
}

void DeliverOnce(Station& station) {
  station.Handle([&] {
    const std::string area = station.disk.Native("C:\\Norvane.Quorex.ECM");
    const auto result =
        Drain(station.state.machine, area, "C:\\QUOREX\\qrxexe\\arecm.cfg", Rounds::kOne);
    // The exit status of the agent.
    if (result != DrainResult::kEmpty) station.messages.shown.push_back({.Text = "waits"});
  });
}

bool IsNote(const std::string& path) {
  return path.ends_with("/note");
}

// Two lines: numbers, and a reason, which may be in the words of a library.
bool IsWholeNote(const std::string& path, const std::string& bytes) {
  static const std::regex note("[0-9]+ [0-9]+\n[^\n]{10,}\n");
  return IsNote(path) && std::regex_match(bytes, note);
}

}  // namespace

namespace {

// The parts of a command that are the same for all that hand something over.
Command Submitting(Command command, const std::string& name) {
  command.name = name;
  command.prepare = PutTiedLogs;
  command.is_whole = IsWholeUpload;
  const auto is_made = command.is_made;
  command.is_made = [is_made](const std::string& path) {
    const bool is_of_log_root = !path.starts_with(kArea) && !path.starts_with(kShare);
    return IsHidden(path) || (is_made && is_made(path)) || (IsPackage(path) && is_of_log_root);
  };
  const auto is_silent = command.is_silent;
  command.is_silent = [is_silent](const std::string& path) {
    return path.starts_with(kArea) || IsHidden(path) || IsPackage(path) ||
           (is_silent && is_silent(path));
  };
  command.may_stay = IsStaged;
  command.afterwards = DeliverOnce;
  command.judge = JudgeHandingOver;
  command.judge_rest = JudgeShare;
  return command;
}

}  // namespace

Command RecordAndUpload() {
  Command command = Submitting(RecordOK(), "record and submit");
  command.judge = JudgePackages;
  return command;
}

Command DeleteAndUpload() {
  return Submitting(DeleteSeveral(), "delete and submit");
}

namespace {

constexpr const char* kImage = "C:\\QUOREX\\PDF\\Logbook_List.pdf";

// The PDF device keeps its job under the name that it has told.
void PrintToFile(Station& station) {
  Init_FileList(station.state, station.services);
  station.print.driver = kPdfDriverName;
  station.print.image = kImage;
  station.print.on_print = [&station] { WriteFile(station.state.machine, kImage, kPages); };
}

}  // namespace

Command PrintListToPdf() {
  Command command;
  command.script = PrintToFile;
  command.run = [](Station& station) {
    station.Handle([&] { PrintList(station.state, station.real); });
  };
  // Who prints sees by the printer whether it has printed, and staging stands in the same trap.
  command.is_silent = [](const std::string&) { return true; };
  command = Submitting(std::move(command), "print the list to PDF and submit");
  command.judge = [](const Aftermath& after) { return JudgeOutbox(after.now); };
  command.prepare = [](Station& station) {
    PutTiedLogs(station);
    station.disk.Put(kImage, "%PDF an older print");
  };
  return command;
}

Command DeliverToFolder() {
  const std::string outbox = std::string(kArea) + "outbox/";
  const auto judge = [outbox](const Disk& disk) {
    return JudgeSubmissions(FilesAlone(disk, outbox), FilesAlone(disk, kShare));
  };
  return {.name = "agent to a folder",
          .prepare =
              [](Station& station) {
                PutLogs(station);
                station.disk.MakeFolders("C:\\share");
                PutSubmissions(station, "file:///C:/share");
              },
          .script = [](Station&) {},
          .run = DeliverOnce,
          .is_made = IsNote,
          .is_whole = IsWholeNote,
          .judge = [judge](const Aftermath& after) { return judge(after.now); },
          .judge_rest = [](const Disk& rest) -> std::string {
            return FilesAlone(rest, kShare) == Expected() ? "" : "not all arrived once and whole";
          }};
}

Command DeliverToServer(const std::string& url, const std::string& root) {
  Command command = DeliverToFolder();
  command.name = "agent to a WebDAV server";
  command.prepare = [url](Station& station) {
    PutLogs(station);
    PutSubmissions(station, url);
  };
  const std::string outbox = std::string(kArea) + "outbox/";
  command.reset = [root] { fs::remove_all(root + "/station"); };
  command.judge = [root, outbox](const Aftermath& after) {
    return JudgeSubmissions(FilesAlone(after.now, outbox), FilesAlone(ReadDisk(root), "station/"));
  };
  command.judge_rest = [root](const Disk&) -> std::string {
    return FilesAlone(ReadDisk(root), "station/") == Expected() ? ""
                                                                : "not all arrived once and whole";
  };
  return command;
}

}  // namespace logbook::test
