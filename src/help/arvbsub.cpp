// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "help/arvbsub.h"

#include <optional>

#include "base/Profile.h"
#include "base/Registry.h"
#include "base/UpperCase.h"

namespace logbook {

namespace {

constexpr char kHostKey[] = "SOFTWARE\\Norvane Instruments\\Quorex Tessaline\\CurrentVersion";
constexpr std::size_t kLongestPath = 255;
constexpr std::size_t kHelpBuffer = 256;

// Commands of the two engines.
constexpr std::uint32_t kDisplayTopic = 0, kDisplayToc = 1, kDisplayIndex = 2, kCloseAll = 18,
                        kInitialize = 28, kUninitialize = 29;
constexpr std::uint32_t kQuit = 2;

// Stands for a window or file that a command does not use.
constexpr std::intptr_t kNoWindow = 1;
constexpr char kNoFile[] = "1";

// A value of the settings up to its first NUL; "ERR" where it is missing.
std::string Setting(const AppState& state, const std::string& settings, const char* key) {
  const std::string bytes =
      GetPrivateProfileString(state.machine, "PCS,1", key, "ERR", kHelpBuffer, settings);
  return state.machine.code_page->ToUtf8(bytes.substr(0, bytes.find('\0')));
}

// The help file that the workstation's settings name; false where there is no workstation.
bool FindHelpFile(AppState& state) {
  const std::string host_path = GetHostPath(state.machine);
  if (host_path.empty()) return false;
  const std::string settings =
      host_path + (host_path.ends_with('\\') ? "" : "\\") + "qrxexe\\qrxgen.ist";
  std::string folder = Setting(state, settings, "_HELPPATH$");
  std::string file = Setting(state, settings, "_HELPFILE$");
  if (folder == "ERR") folder.clear();
  if (file == "ERR") file = "quorex.chm";
  if (!folder.empty() && !folder.ends_with('\\')) folder += '\\';
  state.HelpFileName = folder + file;
  return true;
}

std::uint32_t Translated(std::uint32_t command) {
  switch (command) {
    case 1:
      return kHelpContext;
    case 2:
      return kCloseAll;
    case 3:
      return kDisplayIndex;
    case 11:
      return kDisplayTopic;
    default:
      return command;
  }
}

void CloseHelpWindows(Services& services) {
  std::uint32_t no_data = 0;
  services.help.HtmlHelp(kNoWindow, kNoFile, kCloseAll, no_data);
}

void ShowHtmlHelp(AppState& state, Services& services, std::uint32_t command, std::uint32_t data) {
  state.HtmlHelpUsed = true;
  if (command == kCloseAll) return CloseHelpWindows(services);
  const std::intptr_t owner = services.windows.DesktopWindow();
  if (command == kHelpContext) {
    // The topic opens in a fresh window, with the table of contents beside it.
    CloseHelpWindows(services);
    std::uint32_t toc_data = 1;
    services.help.HtmlHelp(owner, state.HelpFileName, kDisplayToc, toc_data);
  }
  services.help.HtmlHelp(owner, state.HelpFileName, command, data);
}

}  // namespace

void InitHelp(AppState& state, Services& services) {
  services.help.HtmlHelp(kNoWindow, kNoFile, kInitialize, state.HelpCookie);
  state.HelpFileName.clear();
  state.HtmlHelpUsed = false;
}

void ShowHelp(AppState& state, Services& services, std::intptr_t window, const std::string& file,
              std::uint32_t command, std::uint32_t data) {
  if (!file.empty()) {
    state.HelpFileName = file;
  } else if (state.HelpFileName.empty()) {
    if (!FindHelpFile(state)) return;
  }
  if (!EndsInIgnoringCase(state.HelpFileName, ".chm")) {
    services.help.WinHelp(window, state.HelpFileName, command, data);
    return;
  }
  ShowHtmlHelp(state, services, Translated(command), data);
}

void ShowHelpTopic(AppState& state, Services& services, HelpTopic topic) {
  ShowHelp(state, services, services.forms.MainWindowHandle(), "", kHelpContext,
           static_cast<std::uint32_t>(topic));
}

void cmdHelp_Click(AppState& state, Services& services) {
  ShowHelpTopic(state, services, HelpTopic::kMainWindow);
}

void CloseHelp(AppState& state, Services& services) {
  CloseHelpWindows(services);
  services.help.HtmlHelp(kNoWindow, kNoFile, kUninitialize, state.HelpCookie);
  if (EndsInIgnoringCase(state.HelpFileName, ".hlp"))
    services.help.WinHelp(services.forms.MainWindowHandle(), "", kQuit, 0);
}

std::string GetHostPath(const Machine& machine) {
  const std::optional<std::string> value = ReadMachineRegistry(machine.home, kHostKey, "Path");
  if (!value || machine.code_page->Length(*value) > kLongestPath) return {};
  return value->substr(0, value->find('\0'));
}

}  // namespace logbook
