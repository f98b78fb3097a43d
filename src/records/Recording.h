// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Recording a log: the conversation of logbook, host, user and disk behind "Record Log".
#pragma once

#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The command "Record Log": makes the folder, has the host write the snapshot into it, opens the
// editor, rebuilds the list and uploads the log to the content server, if there is one. The working
// commands are disabled meanwhile and all enabled afterwards, cmdDelete too whatever the user's
// right. With AutoRec the editor confirms itself. Raises what its untrapped steps raise; the
// commands then stay disabled.
void cmdRecord_Click(AppState& state, Services& services);

// Waits for the cell to read 0, writes the log's path to key "LogFileName" of logbook.ini, sets
// the cell to 1 and waits until it reads something else. No wait has a limit. Raises
// kPathFileAccess (75) with the cell untouched if logbook.ini does not name that path afterwards,
// as when it is read-only or the disk is full.
void GetLogFile(AppState& state, Services& services, const std::string& log_path);

}  // namespace logbook
