// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The printout of a tune report, made from the extract tune.bin that the logbook leaves in a log
// folder. The simulated host has no printer; its printouts are text files.
#pragma once

#include <string>
#include <string_view>

#include "host/Calendar.h"
#include "host/Workstation.h"

namespace logbook::host {

// The printout's text, UTF-8 with CR LF: a heading, then one line for each cell of the extract's
// two rows (UTF-8). An extract without cells gives the heading and a line that says so.
std::string PrintoutText(std::string_view folder_name, std::string_view extract, LocalTime time);

// Prints the report of a log folder into <root>tuneprint\<folder name>.txt, an older one replaced,
// and returns that file's path text. A missing tune.bin counts as an empty one. Raises
// std::runtime_error.
std::string PrintTuneReport(const Workstation& workstation, std::string_view folder,
                            LocalTime time);

}  // namespace logbook::host
