// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/MainWindow.h"

#include <utility>

#include "resources/Resources.h"
#include "state/AppState.h"
#include "state/Fonts.h"
#include "text/CSVMan.h"

namespace logbook {

void Init_Sec(AppState& state) {
  std::string group;
  std::string allowed;
  GetIniString(state.machine, "PCS,1", "GroupName", "", group, state.ExePath + "qrxgen.ist");
  GetIniString(state.machine, "LOGBOOK", "CONTROL\\Delete Log", "", allowed,
               state.ExePath + "acslvl.ist");
  if (group.empty() || allowed.find(group) == std::string::npos)
    state.frmMain.cmdDelete.Enabled = false;
}

void SetMainFonts(AppState& state) {
  const Font font = FormFont();
  state.frmMain.Window.TextFont = font;
  for (Control* control : state.frmMain.Controls()) control->TextFont = font;
}

void SetMainCaptions(AppState& state) {
  MainWindow& window = state.frmMain;
  const std::pair<Control*, int> captions[] = {{&window.Window, 112},    {&window.cmdRecord, 113},
                                               {&window.cmdBrowse, 114}, {&window.cmdDelete, 115},
                                               {&window.cmdExit, 118},   {&window.cmdHelp, 119},
                                               {&window.cmdPrint, 117},  {&window.cmdArchive, 132}};
  for (const auto& [control, number] : captions) control->Caption = LoadResString(number);
}

}  // namespace logbook
