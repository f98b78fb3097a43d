// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// frmMain as the program sees it: its controls, their captions and fonts, and the one user right
// that the logbook enforces. The window itself shows this struct (qt/frmMain.h).
#pragma once

#include <array>

#include "state/Control.h"
#include "state/F1Report.h"

namespace logbook {

struct AppState;

struct MainWindow {
  Control Window{.Name = "frmMain"};  // Place: outer size; Caption: the title
  Size Inner;                         // inner size in twips, as the window system reports it
  bool Available = true;              // false: takes no further input

  Control ListView1{.Name = "ListView1"};
  Control cmdRecord{.Name = "cmdRecord"};
  Control cmdBrowse{.Name = "cmdBrowse"};
  Control cmdDelete{.Name = "cmdDelete"};
  Control cmdPrint{.Name = "cmdPrint"};
  Control cmdExit{.Name = "cmdExit"};
  Control cmdHelp{.Name = "cmdHelp"};
  Control cmdArchive{.Name = "cmdArchive"};

  F1Book F1Report;  // the unseen sheet that the list is printed from

  // All controls in tab order, the list first.
  std::array<Control*, 8> Controls() {
    return {&ListView1, &cmdRecord, &cmdBrowse, &cmdDelete,
            &cmdPrint,  &cmdExit,   &cmdHelp,   &cmdArchive};
  }
};

// Reads the group of the logged-on user (qrxgen.ist) and the groups that may delete logs
// (acslvl.ist), both in ExePath, and disables cmdDelete if the group is empty or no substring of
// them. Missing files read as empty. Raises nothing.
void Init_Sec(AppState& state);

// Sets the fonts of window and controls: name from string 101, size from string 102.
void SetMainFonts(AppState& state);

// Sets the captions of the window and of its seven buttons from the string table.
void SetMainCaptions(AppState& state);

}  // namespace logbook
