// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The folders of the store: one log is one folder under LogRoot, named YYMMDDnn. The descriptor
// logfile.ini and all other files of a log are described in docs/store.md.
#pragma once

#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// Makes the folder of a new log with the first free number of the day (00 to FF, hexadecimal; a
// name is taken by anything that has it, also by a link that leads nowhere or by a pipe) and
// writes key "Date" of section "LogFile" into its logfile.ini. Returns its path with a trailing
// backslash; empty, after a message, if the day's 256 numbers are used up. Raises what MakeFolder
// raises, or kPathFileAccess if the date cannot be written.
std::string GetNewFileName(AppState& state, Services& services);

// The date text of a log: "MM/DD/YYYY HH:MM:SS".
std::string DateText(const LocalTime& time);

}  // namespace logbook
