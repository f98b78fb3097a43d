// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The five reports that turn a bare snapshot file of a log into a sectioned text: analog and meter
// values, system parameters, bit out and bit in values. Which rows and sections a report shows
// depends on the options of the log's instrument. The report files are described in
// docs/file-formats.md. Nothing here knows of a window: viewer, printing and command line share it.
#pragma once

#include <string>
#include <string_view>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"
#include "reports/ReportSource.h"

namespace logbook {

enum class ValueReport { kAnalog, kMeter, kSys, kBitOut, kBitIn };

// The name of the report's file in the log folder, such as "analog.rpt".
std::string_view ReportFileName(ValueReport report);

// The text of a report (UTF-8, lines ended by CR LF) for the log in this folder, given with its
// trailing backslash; empty if the log has no snapshot file for it. Rows behind the end of a short
// file of numbers read "N/A". Raises kInputPastEndOfFile for a bit snapshot of fewer than 16
// fields, kOverflow for a number too large for a double, and what InputFile raises.
std::string ValueReportText(const Machine& machine, const Catalogues& catalogues,
                            ValueReport report, std::string_view log_folder);

// The same, as one of several reports of a log.
std::string ValueReportText(ReportSource& log, const Catalogues& catalogues, ValueReport report);

// The bytes of a report file: the text in the machine's code page and one more CR LF.
std::string ReportFileBytes(const Machine& machine, std::string_view text);

// Writes the report file `name` of a log folder, replacing an older one. Raises what WriteMadeFile
// raises; an older file then stays as it was.
void WriteReportFile(const Machine& machine, std::string_view log_folder, std::string_view name,
                     std::string_view text);

}  // namespace logbook
