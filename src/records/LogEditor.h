// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// frmLogEditor as the program sees it: 18 tick boxes and a comment that finish a new log, or
// Cancel that removes it. The files that it writes are described in docs/store.md.
#pragma once

#include <array>
#include <string>

#include "records/WrappedText.h"
#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

struct LogEditor {
  static constexpr int kChecks = 18;

  LogEditor();  // controls with their names and places

  Control Window;  // Place: client size; Caption: the title
  Control Frame1;
  std::array<Control, kChecks> Check1;  // places inside Frame1; names "Check1(0)" ...
  std::array<bool, kChecks> Ticked{};
  Control Label1;
  Control txtComment;
  Control cmdOK, cmdCancel, cmdHelp;
  bool Unloaded = false;
};

// The load step: fonts, captions, the ticks of the last confirmed record; with AutoRec also the
// fixed comment and the OK action, after which the editor is unloaded.
void LoadLogEditor(AppState& state, LogEditor& editor, WrappedTextBox& comment);

// OK: stores the ticks in the log's logfile.ini, the ticks and "LastFile" in logbook.ini, each
// profile in one replacement, and comment.txt; unloads. Raises what writing comment.txt raises.
void LogEditorOK(AppState& state, LogEditor& editor, WrappedTextBox& comment);

// Cancel: removes the log's folder with its files and unloads; if the folder cannot be removed,
// shows a message and stays open. Nothing behind a link in the folder's place is touched.
void LogEditorCancel(AppState& state, Services& services, LogEditor& editor);

}  // namespace logbook
