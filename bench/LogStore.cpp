// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "LogStore.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace logbook::bench {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRoot = "drives/c/QUOREX/inst1/maintain";
constexpr int kFirstName = 26111500;

constexpr const char* kListFiles[] = {"logfile.ini", "comment.txt",  "auser.txt",
                                      "aall.txt",    "SENSEVAR.MAC", "PARAMVAR.MAC"};

constexpr const char* kLogbookIni =
    "[Header3]\r\nCat=Meter\r\nItem=4\r\n[Header4]\r\nCat=Tune\r\nItem=0\r\n"
    "[Header5]\r\nCat=Analog\r\nItem=214\r\n[Header6]\r\nCat=Meter\r\nItem=22\r\n"
    "[Header7]\r\nCat=Tune\r\nItem=106\r\n[Header8]\r\nCat=Analog\r\nItem=33\r\n";

constexpr const char* kLogfileIni =
    "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\nLENS=1\r\n"
    "LENS2=0\r\nLENS3=0\r\nSecurity=1\r\nSTYLEB=0\r\nNEW_RF=1\r\nQPTYPE=0\r\n"
    "AFC=1\r\nSC=1\r\nOPGS=1\r\nPMP2=0\r\nCOLOPGS=1\r\n[Maintenance]\r\n"
    "Item0=1\r\nItem1=0\r\nItem2=1\r\n";

// Another log has other digits behind the point.
std::string Numbers(int count, int log) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += std::to_string(i) + "." + std::to_string((i + log) % 7) + "\r\n";
  return text;
}

void Write(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(24));
}

}  // namespace

LogStore::LogStore(const std::string& home) {
  machine_.home = fs::absolute(home).string();
  FillCatalogues(catalogues_);
}

void LogStore::Make(int logs) const {
  fs::create_directories(fs::path(machine_.home) / kRoot);
  for (int log = 0; log < logs; ++log) MakeLog(log);
  Write(fs::path(machine_.home) / "drives/c/QUOREX/logbook.ini", kLogbookIni);
  // The disk has shown a later time than that of the logs: the list was written since.
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  fs::create_directory(fs::path(machine_.home) / kRoot / "listlog");
  fs::remove(fs::path(machine_.home) / kRoot / "listlog");
}

std::unique_ptr<AppState> LogStore::NewState() const {
  auto state = std::make_unique<AppState>(machine_);
  state->catalogues = catalogues_;
  state->LogRoot = "C:\\QUOREX\\inst1\\maintain\\";
  state->IniFile = "C:\\QUOREX\\logbook.ini";
  return state;
}

std::vector<std::string> LogStore::FilesOfTheList() const {
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(fs::path(machine_.home) / kRoot)) {
    if (!entry.is_directory()) continue;
    for (const char* name : kListFiles) files.push_back((entry.path() / name).string());
  }
  return files;
}

std::string LogStore::LogFolder(int log) const {
  return (fs::path(machine_.home) / kRoot / std::to_string(kFirstName + log)).string();
}

std::string LogStore::LogFolderText(int log) {
  return "C:\\QUOREX\\inst1\\maintain\\" + std::to_string(kFirstName + log) + "\\";
}

// A macro file with a line for each variable of the catalogue that lies in it.
std::string LogStore::Macro(const std::string& file) const {
  std::string text = "OPT_COLOPGS=1\r\nCLMD=1\r\n";
  for (const TuneItemRecord& item : catalogues_.TuneItems) {
    if (item.File != file) continue;
    text += item.Var + (item.Format.empty() ? "=\"140/70\"\r\n" : "=12.345\r\n");
  }
  return text;
}

void LogStore::MakeLog(int log) const {
  const fs::path folder = LogFolder(log);
  Write(folder / "logfile.ini", kLogfileIni);
  Write(folder / "comment.txt", "Cones were cleaned and the torch was changed.\r\n\r\n");
  Write(folder / "auser.txt", Numbers(kMeterRowCount, log));
  Write(folder / "aall.txt", Numbers(kAnalogRowCount, log));
  Write(folder / "SENSEVAR.MAC", Macro("sensevar.mac"));
  Write(folder / "PARAMVAR.MAC", Macro("paramvar.mac"));
  Write(folder / "OTHERVAR.MAC", Macro("othervar.mac"));
  Write(folder / "RESOVAR.MAC", Macro("resovar.mac"));
  Write(folder / "sys.txt", Numbers(kSysRowCount, log));
  Write(folder / "bin.txt", Numbers(16, log));
  Write(folder / "bout.txt", Numbers(16, log));
  Write(folder / "tune.rpt", std::string(8000, 'x'));
}

}  // namespace logbook::bench
