// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The reports of one log for the command "report": the same bytes that the viewer makes.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/Machine.h"
#include "state/Services.h"

namespace logbook {

inline constexpr auto kReportKinds =
    std::to_array<std::string_view>({"analog", "meter", "sys", "bitout", "bitin", "mainte",
                                     "tunebin", "tune", "acq", "seq", "chain", "err", "all"});

struct ReportRequest {
  std::string kind;      // one of kReportKinds
  std::string folder;    // path text of the log folder
  bool ce_mode = false;  // "err" then stands for the CE error log
  bool write = false;
};

// The bytes of a report in the machine's code page: of the file that the viewer writes (analog,
// meter, sys, bitout, bitin, mainte, tunebin), or of the pane for a text of the host. What the
// viewer says in a box goes to `messages`. With `write` it also writes the file that the viewer
// writes: the report file, or tune.bin for tunebin and tune; nothing for the other texts of the
// host. "all" is all that the viewer writes, one behind the other from analog to tunebin; one that
// fails keeps the others from being printed, but not from being written. Raises kPathNotFound if
// the folder is missing, and what making or writing the report raises.
std::string ReportBytes(const Machine& machine, MessageBoxes& messages,
                        const ReportRequest& request);

}  // namespace logbook
