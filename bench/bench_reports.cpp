// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All reports of a log and its tune.bin, from the snapshot files to the files written.
//
//   bench_reports HOME ROUNDS   samples, a log each, of
//                                 reports.base     each needed file opened, read and closed once
//                                 reports.bare     the same, and files of the reports' sizes made
//                                                  as the reports are, by bare system calls
//                                 reports.all      no report is there, all are written
//                                 reports.each     the same one by one, as the viewer makes them
//                                 reports.same     all are there with the same bytes
//                                 reports.made     their bytes made, nothing written
//                                 reports.tunebin  tune.bin alone, there with the same bytes
//                               The store is one that bench_list has made.
//
//   bench_reports HOME once     all of the first log once, whatever is there, and nothing else: for
//                               counting instructions and system calls from outside
//
// Each time it is looked at whether the files are there with their bytes, and whether those with
// the same bytes were left alone.

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "LogStore.h"
#include "Samples.h"
#include "base/Files.h"
#include "reports/AllReports.h"
#include "reports/MaintenanceReport.h"
#include "reports/TuneReport.h"
#include "reports/ValueReports.h"
#include "snapshot/TuneBin.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

constexpr const char* kNeeded[] = {"logfile.ini",  "aall.txt",   "auser.txt",    "sys.txt",
                                   "bin.txt",      "bout.txt",   "SENSEVAR.MAC", "OTHERVAR.MAC",
                                   "PARAMVAR.MAC", "RESOVAR.MAC"};

std::vector<std::string> NeededOf(const LogStore& store, int log) {
  std::vector<std::string> paths;
  for (const char* name : kNeeded) paths.push_back(store.LogFolder(log) + "/" + name);
  return paths;
}

constexpr std::size_t kShortestReport = 40;

void WriteTune(const LogStore& store, const std::string& folder) {
  WriteTuneBin(store.TheMachine(), folder + std::string(kTuneBinFile),
               TuneCells(store.TheMachine(), store.TheCatalogues(), folder));
}

std::vector<MadeReport> MakeAll(const LogStore& store, const std::string& folder) {
  return MakeAllReports(store.TheMachine(), store.TheCatalogues(), folder);
}

void WriteAllReports(const LogStore& store, const std::string& folder) {
  WriteReports(store.TheMachine(), folder, MakeAll(store, folder));
}

// The least that making these files can cost: each under another name first, so that readers never
// meet a part of one.
void WriteBare(const std::string& native_folder, const std::vector<MadeReport>& reports) {
  constexpr const char* kNew = "new~";
  const int folder = open(native_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for (const MadeReport& report : reports) {
    const int file = openat(folder, kNew, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    const ssize_t written = write(file, report.bytes.data(), report.bytes.size());
    Expect(written == static_cast<ssize_t>(report.bytes.size()), native_folder);
    close(file);
    Expect(renameat(folder, kNew, folder, std::string(report.file).c_str()) == 0, native_folder);
  }
  close(folder);
}

// The files as they are, which must be those that have been made.
std::vector<FileStamp> StampsOf(const Machine& machine, const std::string& folder,
                                const std::vector<MadeReport>& made) {
  std::vector<FileStamp> stamps;
  for (const MadeReport& report : made) {
    const std::string path = folder + std::string(report.file);
    Expect(report.bytes.size() >= kShortestReport, path);
    Expect(ReadFile(machine, path) == report.bytes, path);
    stamps.push_back(StampOf(machine, path));
  }
  return stamps;
}

// As the menu of the viewer has them made.
void WriteEach(const LogStore& store, const std::string& folder) {
  const Machine& machine = store.TheMachine();
  const Catalogues& catalogues = store.TheCatalogues();
  for (const ValueReport report : {ValueReport::kAnalog, ValueReport::kMeter, ValueReport::kSys,
                                   ValueReport::kBitOut, ValueReport::kBitIn}) {
    WriteReportFile(machine, folder, ReportFileName(report),
                    ValueReportText(machine, catalogues, report, folder));
  }
  WriteReportFile(machine, folder, kMaintenanceReportFile,
                  MaintenanceText(machine, catalogues, folder));
  WriteTune(store, folder);
}

// Takes the files out of the folder. They are not deleted: a file system that does not give the
// places of files away at once that were deleted a moment ago (ext4) would look through all of them
// for each new one, which no log's folder would do to it.
void PutAway(const LogStore& store, const std::string& native_folder,
             const std::vector<MadeReport>& made) {
  static int count = 0;
  const std::filesystem::path away = std::filesystem::path(store.TheMachine().home) / "away";
  std::filesystem::create_directory(away);
  for (const MadeReport& report : made) {
    const auto path = std::filesystem::path(native_folder) / report.file;
    if (std::filesystem::exists(path))
      std::filesystem::rename(path, away / std::to_string(++count));
  }
}

void Round(const LogStore& store, int log) {
  const Machine& machine = store.TheMachine();
  const std::string folder = LogStore::LogFolderText(log);
  const std::string native_folder = store.LogFolder(log);
  const std::vector<std::string> needed = NeededOf(store, log);
  const std::vector<MadeReport> made = MakeAll(store, folder);
  Measure("reports.base", [&] { ReadBare(needed); });
  PutAway(store, native_folder, made);
  Measure("reports.bare", [&] {
    ReadBare(needed);
    WriteBare(native_folder, made);
  });
  StampsOf(machine, folder, made);
  PutAway(store, native_folder, made);
  Measure("reports.each", [&] { WriteEach(store, folder); });
  StampsOf(machine, folder, made);
  PutAway(store, native_folder, made);
  Measure("reports.all", [&] { WriteAllReports(store, folder); });
  const std::vector<FileStamp> stamps = StampsOf(machine, folder, made);
  Measure("reports.same", [&] { WriteAllReports(store, folder); });
  Measure("reports.tunebin", [&] { WriteTune(store, folder); });
  Expect(StampsOf(machine, folder, made) == stamps, "files with the same bytes left alone");
  std::size_t size = 0;
  Measure("reports.made", [&] { size = MakeAll(store, folder).size(); });
  Expect(size == made.size(), "reports made");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: bench_reports HOME ROUNDS|once\n";
    return 2;
  }
  const LogStore store(argv[1]);
  if (std::strcmp(argv[2], "once") == 0) {
    WriteAllReports(store, LogStore::LogFolderText(0));
    return 0;
  }
  for (int round = 0; round < std::atoi(argv[2]); ++round) Round(store, round % 16);
  return 0;
}
