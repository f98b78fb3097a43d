// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A workstation in a folder of its own, with a host that speaks DDE and the real logbook.exe, which
// lies beside this program.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/TestMachine.h"
#include "win32/DdeHost.h"
#include "win32/Screen.h"

namespace logbook::windows_test {

inline constexpr char kSettings[] = "C:\\QUOREX\\qrxexe\\logbook.ini";
inline constexpr char kLogRoot[] = "C:\\QUOREX\\inst1\\maintain\\";

// Where the buttons stand.
inline constexpr Spot kFirstRow = {60, 40}, kItemHeader = {295, 15}, kRecordLog = {-558, -19},
                      kViewLog = {-356, -19}, kPrintList = {-258, -19}, kExit = {-106, -19},
                      kHelp = {-38, -19};
inline constexpr Spot kTune = {20, 10}, kMaintenance = {160, 10}, kViewerPrint = {204, -22},
                      kViewerExit = {372, -22}, kViewerHelp = {528, -22};
inline constexpr Spot kChooserCancel = {176, -22}, kEditorCancel = {320, -22};

class LogbookAtHost : public testing::Test {
 protected:
  LogbookAtHost();

  // The host's answers to the four requests.
  static std::map<std::string, std::string> Items();
  // The folder that the logbook hands over, as a path text.
  std::string FolderOfJob() const;
  // What a host leaves in a log folder.
  void WriteSnapshot(const std::string& folder) const;
  std::vector<std::string> Logs() const;
  // A log with a snapshot and a comment.
  void AddLog(const std::string& name) const;
  // Adds a value to the workstation's registry key, as a registry file writes it.
  void AddRegistryValue(const std::string& name, const std::string& escaped_text) const;

  // Starts host and logbook, and goes on when the host follows the cell and the main window, or one
  // of another title, is there.
  void Start(const std::string& arguments = "HOST",
             const std::string& program = BesideThisProgram("logbook.exe"));
  DdeHost& host() { return *host_; }
  Program& logbook() { return *logbook_; }
  HWND main() const { return main_; }

  // The window once it is shown and takes input; fails the test after a minute. `title` empty: any
  // but the main window.
  HWND WaitForWindow(const std::string& title);
  // Opens the viewer on the first row of the list.
  HWND View();
  // Presses "Exit", as what the host answers to the nine, and waits for the end of the program.
  void Exit();
  // As DdeHost does, with a failure of the test if the condition does not come to hold.
  void WaitFor(const std::string& what, const std::function<bool()>& condition);

  test::TestMachine disk;

 private:
  std::optional<DdeHost> host_;
  std::optional<Program> logbook_;
  HWND main_ = nullptr;
};

}  // namespace logbook::windows_test
