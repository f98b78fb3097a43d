// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All reports of a log and its tune.bin, from the snapshot files to the files written.
//
//   bench_reports HOME ROUNDS   samples, a log each, of reports.base (each needed file opened, read
//                               and closed once), reports.all (no report is there, all are
//                               written), reports.same (all are there with the same bytes) and
//                               reports.tunebin (the same of tune.bin alone). The store is one that
//                               bench_list has made.
//
//   bench_reports HOME once     all of the first log once, whatever is there, and nothing else: for
//                               counting instructions and system calls from outside
//
// Each time it is looked at whether the files are there with their text, and whether those with the
// same bytes were left alone.

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "LogStore.h"
#include "Samples.h"
#include "base/Files.h"
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

constexpr ValueReport kValueReports[] = {ValueReport::kAnalog, ValueReport::kMeter,
                                         ValueReport::kSys, ValueReport::kBitOut,
                                         ValueReport::kBitIn};
constexpr std::size_t kShortestReport = 40;

void WriteTune(const LogStore& store, const std::string& folder) {
  WriteTuneBin(store.TheMachine(), folder + std::string(kTuneBinFile),
               TuneCells(store.TheMachine(), store.TheCatalogues(), folder));
}

void WriteAllReports(const LogStore& store, const std::string& folder) {
  const Machine& machine = store.TheMachine();
  for (const ValueReport report : kValueReports)
    WriteReportFile(machine, folder, ReportFileName(report),
                    ValueReportText(machine, store.TheCatalogues(), report, folder));
  WriteReportFile(machine, folder, kMaintenanceReportFile,
                  MaintenanceText(machine, store.TheCatalogues(), folder));
  WriteTune(store, folder);
}

std::vector<std::string> MadeFiles(const std::string& folder) {
  std::vector<std::string> files = {folder + std::string(kMaintenanceReportFile),
                                    folder + std::string(kTuneBinFile)};
  for (const ValueReport report : kValueReports)
    files.push_back(folder + std::string(ReportFileName(report)));
  return files;
}

std::vector<FileStamp> StampsOf(const Machine& machine, const std::vector<std::string>& files) {
  std::vector<FileStamp> stamps;
  for (const std::string& file : files) {
    Expect(ReadFile(machine, file).size() >= kShortestReport, file);
    stamps.push_back(StampOf(machine, file));
  }
  return stamps;
}

void Round(const LogStore& store, int log) {
  const Machine& machine = store.TheMachine();
  const std::string folder = LogStore::LogFolderText(log);
  const std::vector<std::string> needed = NeededOf(store, log);
  const std::vector<std::string> made = MadeFiles(folder);
  for (const std::string& file : made) std::filesystem::remove(NativePath(machine, file));
  Measure("reports.base", [&] { ReadBare(needed); });
  Measure("reports.all", [&] { WriteAllReports(store, folder); });
  const std::vector<FileStamp> stamps = StampsOf(machine, made);
  Measure("reports.same", [&] { WriteAllReports(store, folder); });
  Measure("reports.tunebin", [&] { WriteTune(store, folder); });
  Expect(StampsOf(machine, made) == stamps, "files with the same bytes left alone");
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
