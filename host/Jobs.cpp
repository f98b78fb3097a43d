// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Jobs.h"

#include <charconv>
#include <limits>
#include <stdexcept>
#include <system_error>

#include "base/Files.h"
#include "base/Profile.h"
#include "host/TunePrintout.h"

namespace logbook::host {
namespace {

std::string ExistingFolderOfJob(const Workstation& workstation) {
  std::string folder = FolderOfJob(workstation);
  if (folder.empty() || !FolderExists(workstation.machine, folder)) {
    throw std::runtime_error("no folder \"" + folder + "\" to work on");
  }
  return folder;
}

}  // namespace

double CellNumber(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc::result_out_of_range ? std::numeric_limits<double>::infinity() : number;
}

std::string FolderOfJob(const Workstation& workstation) {
  const Machine& machine = workstation.machine;
  return machine.code_page->ToUtf8(GetPrivateProfileString(machine, "LogBook", "LogFileName", "",
                                                           kLargestProfile,
                                                           workstation.exe_path + "logbook.ini"));
}

std::string Capture(const HostOptions& options, LocalTime time) {
  const Machine& machine = options.workstation.machine;
  const std::string folder = ExistingFolderOfJob(options.workstation);
  if (HoldsSnapshot(machine, folder)) {
    throw std::runtime_error("the folder \"" + folder +
                             "\" holds a snapshot already, nothing is written");
  }
  const LogMoment moment{options.instrument, LogNumberOf(machine, folder), time,
                         options.least_log_bytes};
  WriteSnapshot(machine, folder, MakeSnapshot(moment), options.damages);
  WriteOptions(machine, folder, options.instrument.build);
  return "captured " + folder;
}

std::string Print(const HostOptions& options, LocalTime time) {
  return "printed " +
         PrintTuneReport(options.workstation, ExistingFolderOfJob(options.workstation), time);
}

}  // namespace logbook::host
