// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The jobs that the logbook hands over through the handshake cell.
#pragma once

#include <string>
#include <string_view>

#include "host/Calendar.h"
#include "host/HostOptions.h"

namespace logbook::host {

// The number in a cell: 0 for an empty text or one that does not begin with a number, infinity for
// one that no double holds.
double CellNumber(std::string_view text);

// The folder that the logbook names in logbook.ini, key "LogFileName" of section "LogBook"; a path
// text of any length, empty if it names none.
std::string FolderOfJob(const Workstation& workstation);

// Writes the snapshot of this moment and section "OPTION" into the folder of the job, and returns a
// line about it for the operator. Nothing is written if there is no such folder, or if it holds a
// snapshot already: a record stays as it was made. Raises std::runtime_error.
std::string Capture(const HostOptions& options, LocalTime time);

// Prints the tune report of the folder of the job, and returns a line about it. Raises
// std::runtime_error, also if there is no such folder.
std::string Print(const HostOptions& options, LocalTime time);

}  // namespace logbook::host
