// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "shell/StartUp.h"

#include <cstdlib>
#include <exception>
#include <new>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "help/arvbsub.h"
#include "loglist/LogList.h"
#include "placement/AsDialog.h"
#include "placement/LogbookGen.h"
#include "records/Recording.h"
#include "resources/ResourceText.h"
#include "state/HandshakeCell.h"

namespace logbook {

namespace {

constexpr int kRunTimeError = 1461;
constexpr int kEndingPolls = 200000;
constexpr const char* kHostTopic = "CPWAIT";

RunTimeError AsRunTimeError(const std::exception& raised) {
  if (const auto* error = dynamic_cast<const RunTimeError*>(&raised)) return *error;
  const bool is_memory = dynamic_cast<const std::bad_alloc*>(&raised) != nullptr;
  return RunTimeError(is_memory ? ErrorNumber::kOutOfMemory : ErrorNumber::kInternalError);
}

}  // namespace

void TakeCommandLine(AppState& state, const std::string& command_line) {
  const std::size_t blank = command_line.find(' ');
  const bool has_first_token = blank != std::string::npos && blank > 0;
  state.HostId = has_first_token ? command_line.substr(0, blank) : command_line;
  state.CEMode = ContainsIgnoringCase(command_line, "CE");
  state.AutoRec = ContainsIgnoringCase(command_line, "AutoRec");
}

void Form_Initialize(AppState& state, Services& services) {
  InitHelp(state, services);
}

void Form_Load(AppState& state, Services& services, const std::string& command_line) {
  TakeCommandLine(state, command_line);
  if (state.HostId.empty()) GlobalEnd(state, services);
  if (services.process.OtherInstanceRuns()) GlobalEnd(state, services);
  GetPath(state, services);
  Init_Sec(state);
  SetMainFonts(state);
  SetMainCaptions(state);
  FillCatalogues(state.catalogues);
  Init_FileList(state, services);
  if (state.AutoRec) {
    cmdRecord_Click(state, services);
    GlobalEnd(state, services);
  }
  ArrangeMainWindow(state, services);
  services.forms.UpdateMain();
  PlaceAndRaise(services.windows, services.forms.MainWindowHandle());
  std::string unused_message;
  if (services.ecm.EcmEnabled(unused_message))
    services.ecm.EcmSetOwnerWindow(services.forms.MainWindowHandle());
}

void Form_Unload(AppState& state, Services& services) {
  GlobalEnd(state, services);
}

void GetPath(AppState& state, Services& services) {
  const auto ask = [&](const char* item) {
    return services.host.Request(state.HostId, kHostTopic, item);
  };
  try {
    const std::string exe_path = ask("_exepath$");
    state.IniFile = exe_path + "logbook.ini";
    state.ExePath = exe_path;
    state.LogRoot = ask("_instpath$") + "maintain\\";
    state.HelpPath = ask("_helppath$");
    state.HelpFile = ask("_helpfile$");
    services.host.Close();
    if (!FolderExists(state.machine, state.LogRoot)) MakeFolder(state.machine, state.LogRoot);
  } catch (const std::exception&) {
    // A host that does not run looks at no cell, so that the end has nobody to wait for.
    if (!services.host.IsThere(state.HostId)) services.process.Resign();
    GlobalEnd(state, services);
  }
}

void GlobalEnd(AppState& state, Services& services) {
  state.frmMain.Available = false;
  services.forms.UpdateMain();
  const auto poll = [&services] {
    if (!services.cell.IsReachable()) throw RunTimeError(ErrorNumber::kDeviceInputOutput);
    return services.events.Deliver();
  };
  try {
    while (CellValue(services.cell) != 0) poll();
    services.cell.SetText("9");
    int polls = 0;
    while (CellValue(services.cell) == 9 && polls < kEndingPolls) polls += poll();
  } catch (const std::exception&) {
    // The host is out of reach: the end needs no one's consent.
  }
  CloseHelp(state, services);
  services.process.End(0);
  std::abort();  // not reached; the compiler does not see it through the interface
}

void RunHandler(Services& services, const std::function<void()>& handler) {
  try {
    handler();
  } catch (const std::exception& raised) {
    const RunTimeError error = AsRunTimeError(raised);
    const std::string number = std::to_string(static_cast<int>(error.Number()));
    services.messages.Show(
        {.Text = ResourceText(kRunTimeError, {number}) + "\r\n\r\n" + error.Description(),
         .Icon = MessageIcon::kCritical});
    services.process.End(1);
  }
}

}  // namespace logbook
