// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The maintenance records of a log: one sentence for each item that was ticked when the log was
// recorded (section "Maintenance" of logfile.ini, docs/file-formats.md).
#pragma once

#include <string>
#include <string_view>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"
#include "reports/ReportSource.h"

namespace logbook {

inline constexpr std::string_view kMaintenanceReportFile = "mainte.rpt";

// The sentences, each ended by CR LF (UTF-8), for the log in this folder, given with its trailing
// backslash. Only a value of exactly 1 counts; missing file, section or key read 0. Raises
// kOverflow for a value too large for a double.
std::string MaintenanceText(const Machine& machine, const Catalogues& catalogues,
                            std::string_view log_folder);

// The same, as one of several reports of a log.
std::string MaintenanceText(ReportSource& log, const Catalogues& catalogues);

}  // namespace logbook
