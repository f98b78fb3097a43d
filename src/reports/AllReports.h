// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All that the viewer writes into the folder of a log, made and written in one go: the five reports
// of values, the maintenance records and tune.bin, each as if it were the only one.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"
#include "base/RunTimeError.h"
#include "catalogue/ItemRecord.h"

namespace logbook {

struct MadeReport {
  std::string_view file;                // its name in the log folder
  std::string bytes;                    // in the machine's code page
  std::optional<RunTimeError> failure;  // why there are none
};

// The reports of the log in this folder, given with its trailing backslash: analog, meter, Sys,
// bit out, bit in, maintenance, tune.bin. One that cannot be made holds what ValueReportText,
// MaintenanceText or TuneCells raises. Raises nothing.
std::vector<MadeReport> MakeAllReports(const Machine& machine, const Catalogues& catalogues,
                                       std::string_view log_folder);

// Writes those that have been made, each in place of an older one; what has no bytes keeps its
// older file. When all have been tried, raises the first failure, be it of making or of writing.
void WriteReports(const Machine& machine, std::string_view log_folder,
                  std::span<const MadeReport> reports);

}  // namespace logbook
