// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Start and stop of a run. Form_Load is the start-up sequence and the program has no other entry;
// the process ends in GlobalEnd alone.
#pragma once

#include <functional>
#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The initialise step of frmMain, before its load: sets up the help bridge.
void Form_Initialize(AppState& state, Services& services);

// The load step of frmMain: from the command line (the program's arguments joined by single
// blanks) to the moment the window may be shown. Ends the process through GlobalEnd if the line is
// empty, another instance runs or the host does not answer, and after an automatic recording.
// Raises what its untrapped steps raise.
void Form_Load(AppState& state, Services& services, const std::string& command_line);

// The unload step of frmMain: GlobalEnd.
[[noreturn]] void Form_Unload(AppState& state, Services& services);

// Fetches the paths from the host and makes LogRoot (one level) if it is missing. Any failure ends
// the process through GlobalEnd, silently, and without a wait if the host does not run at all.
void GetPath(AppState& state, Services& services);

// Makes the main window unavailable, waits without limit until the handshake cell reads 0, writes
// 9, waits for at most 200000 polls until the host has changed it, closes the help bridge
// and ends the process with status 0. A failure, such as a cell that no host can reach, ends the
// waits: it keeps nobody who is not the running logbook, nor one whose bus has gone.
[[noreturn]] void GlobalEnd(AppState& state, Services& services);

// Takes HostId, CEMode and AutoRec from the command line. HostId is what lies before the first
// blank, or the whole line if there is no blank or it stands first; the two words are searched for
// in the whole line without regard to case.
void TakeCommandLine(AppState& state, const std::string& command_line);

// The one frame around every event handler: runs it and, if an error comes out, reports it in a
// message box and ends the process with status 1. No error crosses into the toolkit: an exhausted
// memory is reported as kOutOfMemory, any other error of the language as kInternalError.
void RunHandler(Services& services, const std::function<void()>& handler);

}  // namespace logbook
