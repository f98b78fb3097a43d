// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/Recording.h"

#include <optional>

#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "loglist/LogList.h"
#include "records/LogFolder.h"
#include "resources/ResourceText.h"
#include "state/HandshakeCell.h"
#include "upload/ECMSub.h"

namespace logbook {

namespace {

constexpr int kEditorCaption = 176;

// The commands that rest during a recording, in the order in which they come back.
void EnableWorkingCommands(AppState& state, Services& services, bool enabled) {
  MainWindow& window = state.frmMain;
  for (Control* control : {&window.cmdRecord, &window.ListView1, &window.cmdBrowse,
                           &window.cmdDelete, &window.cmdPrint, &window.cmdArchive})
    control->Enabled = enabled;
  services.forms.UpdateMain();
}

void OpenEditor(AppState& state, Services& services) {
  if (!state.AutoRec) {
    services.forms.ShowLogEditor(ResourceText(kEditorCaption) + ":" + state.LogPath);
    return;
  }
  try {
    services.forms.ShowLogEditor(std::nullopt);
  } catch (const RunTimeError& error) {
    // The editor confirms itself while it loads; showing it then fails, and only that is expected.
    if (error.Number() != ErrorNumber::kObjectUnloaded) throw;
  }
}

// The folder that the host would work on, however long its name.
std::string FolderNamedToTheHost(const AppState& state) {
  constexpr std::size_t kAnyLength = 32768;
  return state.machine.code_page->ToUtf8(GetPrivateProfileString(
      state.machine, "LogBook", "LogFileName", "", kAnyLength, state.IniFile));
}

}  // namespace

void cmdRecord_Click(AppState& state, Services& services) {
  EnableWorkingCommands(state, services, false);
  state.LogPath = GetNewFileName(state, services);
  if (!state.LogPath.empty()) {
    GetLogFile(state, services, state.LogPath);
    OpenEditor(state, services);
    Init_FileList(state, services);
    UploadRecordedLog(state, services);
  }
  EnableWorkingCommands(state, services, true);
}

void GetLogFile(AppState& state, Services& services, const std::string& log_path) {
  while (CellValue(services.cell) != 0) services.events.Deliver();
  WritePrivateProfileString(state.machine, "LogBook", "LogFileName", log_path, state.IniFile);
  // What stands there else is a record that exists: the host would capture into it.
  if (FolderNamedToTheHost(state) != log_path) throw RunTimeError(ErrorNumber::kPathFileAccess);
  services.cell.SetText("1");
  while (CellValue(services.cell) == 1) services.events.Deliver();
}

}  // namespace logbook
