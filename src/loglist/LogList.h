// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The list of logs: built anew from the disk after every change, and written out as listlog.csv
// (docs/store.md).
#pragma once

#include <cstdint>
#include <functional>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The rebuild: rows, headers, value columns (twice) and listlog.csv. Raises what its untrapped
// steps raise.
void Init_FileList(AppState& state, Services& services);

// The rebuild of what the list shows, without listlog.csv and the window: the same for the program
// and for logbookctl. Runs `between_files`, if there is one, before it turns to a file. Raises what
// its untrapped steps raise.
void RebuildList(AppState& state, MessageBoxes& messages,
                 const std::function<void()>& between_files = {});

// Scans LogRoot for folders, at most 256, into FileList 1 to the result. Shows one message if
// there are 256 or more.
std::int16_t CreateFileList(AppState& state, MessageBoxes& messages);

// Reads date and first comment line (at most 64 KB of it) of each log into FileList. Missing files
// read as empty. Raises
// kInputPastEndOfFile for a comment.txt without a byte.
void FillFileList(AppState& state);

// Adds a list row for each log, sets the fixed headers, and calls FillListView.
void FillListHeader(AppState& state);

// Fills the six value columns by the choice that logbook.ini holds for each.
void FillListView(AppState& state);

// Writes listlog.csv into LogRoot from what the list shows. Any failure ends it in silence.
void SaveList(const AppState& state);

// The bytes of listlog.csv for this list.
std::string ListText(const AppState& state);

// The logbook.ini section that holds the choice of a list column (3 to 8): "Header" or, in CE
// mode, "Header_CE", and the number.
std::string ColumnSection(const AppState& state, int column);

}  // namespace logbook
