// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The tune report of a log: the host lays it out and prints it. This program shows the host's text
// tune.rpt and extracts the tune values from the macro files into tune.bin for the printing host
// (docs/file-formats.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"
#include "reports/ReportSource.h"
#include "snapshot/TuneBin.h"

namespace logbook {

inline constexpr std::string_view kTuneReportFile = "tune.rpt";
inline constexpr std::string_view kTuneBinFile = "tune.bin";

// The columns of tune.bin for the log in this folder, given with its trailing backslash: one for
// each tune row, in catalogue order, whose macro file exists. The value is empty if the file does
// not name the row's variable, and "N/A" if the row does not apply. Each macro file is read once.
// Raises what reading a macro file raises, kOverflow for a number too large for a double or a flag
// beyond 16 bits, kInvalidProcedureCall for a text value without two double quotes.
std::vector<TuneCell> TuneCells(const Machine& machine, const Catalogues& catalogues,
                                std::string_view log_folder);

// The same, as one of several reports of a log.
std::vector<TuneCell> TuneCells(ReportSource& log, const Catalogues& catalogues);

}  // namespace logbook
