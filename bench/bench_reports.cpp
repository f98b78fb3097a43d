// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All reports of a log and its tune.bin, from the snapshot files to the files written.
//
//   bench_reports HOME ROUNDS   samples, a log each, of reports.base (each needed file opened, read
//                               and closed once), reports.all and reports.tunebin. The store is
//                               one that bench_list has made.

#include <cstdlib>
#include <iostream>

#include "LogStore.h"
#include "Samples.h"
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

void WriteTune(const LogStore& store, const std::string& folder) {
  WriteTuneBin(store.TheMachine(), folder + std::string(kTuneBinFile),
               TuneCells(store.TheMachine(), store.TheCatalogues(), folder));
}

void WriteAllReports(const LogStore& store, const std::string& folder) {
  const Machine& machine = store.TheMachine();
  for (const ValueReport report : {ValueReport::kAnalog, ValueReport::kMeter, ValueReport::kSys,
                                   ValueReport::kBitOut, ValueReport::kBitIn})
    WriteReportFile(machine, folder, ReportFileName(report),
                    ValueReportText(machine, store.TheCatalogues(), report, folder));
  WriteReportFile(machine, folder, kMaintenanceReportFile,
                  MaintenanceText(machine, store.TheCatalogues(), folder));
  WriteTune(store, folder);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: bench_reports HOME ROUNDS\n";
    return 2;
  }
  const LogStore store(argv[1]);
  for (int round = 0; round < std::atoi(argv[2]); ++round) {
    const int log = round % 16;
    const std::string folder = LogStore::LogFolderText(log);
    const std::vector<std::string> needed = NeededOf(store, log);
    Measure("reports.base", [&] { ReadBare(needed); });
    Measure("reports.all", [&] { WriteAllReports(store, folder); });
    Measure("reports.tunebin", [&] { WriteTune(store, folder); });
  }
  return 0;
}
