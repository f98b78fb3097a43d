// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// frmLogView as the program sees it: the window in which one log is read, its comment below and one
// report at a time above. Its files lie in the log's folder and are described in
// docs/file-formats.md. The window itself shows this struct (qt/frmLogView.h).
#pragma once

#include <array>
#include <string>

#include "state/AppState.h"
#include "state/Control.h"
#include "state/F1Report.h"
#include "state/Services.h"
#include "viewer/TextLogs.h"

namespace logbook {

struct MenuEntry {
  std::string Name;       // the object name
  std::string Caption{};  // UTF-8; an ampersand marks the access key
  bool Visible = true;
};

struct LogView {
  LogView();  // controls with their names and places

  Control Window;  // Place: client size; Caption: the title
  Control txtReport, txtComment;
  Control cmdPrint, cmdExit, cmdHelp;
  Control F1Report;  // the sheet that reports are printed from, never visible
  F1Book Sheet;      // what F1Report holds

  // The texts of the two panes: UTF-8, lines ended by CR LF. Of a long text of the host the report
  // pane takes what is behind ReportText as it comes to it.
  std::string ReportText, CommentText;
  TextLines ReportRest;

  // The menu bar. mnuLog and mnuBit are drop-downs; the entries behind each of them up to the next
  // bar entry stand in it. mnuBout and mnuBin are reached through mnuBit alone.
  MenuEntry mnuTune{"mnuTune"};
  MenuEntry mnuLog{"mnuLog"};
  MenuEntry mnuACQlog{"mnuACQlog"}, mnuSeqlog{"mnuSeqlog"}, mnuChainlog{"mnuChainlog"};
  MenuEntry mnuErrLog{"mnuErrLog"}, mnuCeErrLog{"mnuCeErrLog"};
  MenuEntry mnuMainte{"mnuMainte"};
  MenuEntry mnuMeter{"mnuMeter"};
  MenuEntry mnuAna{"mnuAna"};
  MenuEntry mnuBit{"mnuBit"};
  MenuEntry mnuBout{"mnuBout"}, mnuBin{"mnuBin"};
  MenuEntry mnuSYS{"mnuSYS"};

  // Folder of the log on view, with trailing backslash, as it is shown and told to the host; set by
  // LoadLogView and not changed later. Its files are opened through LogFolder.
  std::string LogFolderPath;
  bool Unloaded = false;

  // All controls in the order of the form: tab order, then the sheet.
  std::array<Control*, 6> Controls() {
    return {&txtReport, &txtComment, &cmdPrint, &cmdExit, &cmdHelp, &F1Report};
  }
};

// The folder of the log on view by its exact name: where it has vanished, another that differs in
// case is not taken for it.
std::string LogFolder(const LogView& view);

// The load step: folder, menus, fonts, captions, comment. No report: its pane stays empty. Raises
// kSubscriptOutOfRange if CurrentLog lies outside FileList, and what reading the comment raises.
void LoadLogView(AppState& state, LogView& view);

// Shows and hides the menu entries by CEMode.
void ChangeMode(const AppState& state, LogView& view);

// The font of strings 101 and 102 for the window and its controls, but for the last one; that of
// strings 103 and 104 for the two panes.
void SetViewerFonts(LogView& view);

// The captions of window, buttons and menus from the string table.
void SetViewerCaptions(LogView& view);

// Fills the comment pane from comment.txt; empty if the log has none.
void LoadComment(const AppState& state, LogView& view);

// The view routines. Each clears the report pane, makes its report from the files of the log and
// shows it. A missing file of the host gives an empty pane.

// Value reports and maintenance records: also written to their report file. Any run-time error ends
// the routine in silence: nothing is shown of a report that cannot be made; one that cannot be
// written stays on show, and the older file stays.
void ViewAnalog(const AppState& state, LogView& view);
void ViewMeter(const AppState& state, LogView& view);
void ViewSys(const AppState& state, LogView& view);
void ViewBout(const AppState& state, LogView& view);
void ViewBin(const AppState& state, LogView& view);
void ViewMainte(const AppState& state, LogView& view);

// The host's logs below 64 KB; of a longer one its first lines, and one message. Raise what
// InputFile raises.
void ViewACQLog(const AppState& state, Services& services, LogView& view);
void ViewSeqLog(const AppState& state, Services& services, LogView& view);
void ViewErrLog(const AppState& state, Services& services, LogView& view);
// No menu entry that can be seen leads here.
void ViewCEErrLog(const AppState& state, Services& services, LogView& view);

// Texts of the host of any length: the first of them, and the rest to be taken. Raise what
// InputFile raises.
void ViewChnSeqLog(const AppState& state, LogView& view);
void ViewTuneReport(const AppState& state, LogView& view);

// Writes tune.bin anew. Touches no control; any run-time error ends it in silence, and an older
// file stays.
void CreateTuneText(const AppState& state, const LogView& view);

// Has the host print the tune report of the log: waits until the cell reads 0, writes the folder to
// key "LogFileName" of logbook.ini, sets the cell to 2 and waits until it reads something else. No
// wait has a limit; events are delivered meanwhile.
void PrintTuneReport(const AppState& state, Services& services, const LogView& view);

// A menu command: its view routine, and ViewMode behind it. mnuCeErrLog leaves ViewMode as it is.
struct ViewCommand {
  MenuEntry LogView::*Entry;
  void (*Run)(AppState& state, Services& services, LogView& view);
};

// All menu commands, in menu order. Raise what their view routines raise; ViewMode then stays.
extern const std::array<ViewCommand, 12> kViewCommands;

// "Exit": sets ViewMode to 0 and unloads. The close box only unloads.
void LogViewExit(AppState& state, LogView& view);

}  // namespace logbook
