// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Context help for every window, and the look-up of the workstation's installation. The help file
// belongs to the workstation: its folder and name stand in section "PCS,1" of
// "qrxexe\qrxgen.ist" below the workstation's folder, under "_HELPPATH$" and "_HELPFILE$".
#pragma once

#include <cstdint>
#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// The command that all callers of ShowHelp give: show the topic of this number.
inline constexpr std::uint32_t kHelpContext = 15;

// Help topics; where CE mode has a topic of its own it stands behind the other.
enum class HelpTopic : std::uint32_t {
  kMainWindow = 16700,
  kViewer = 16701,
  kViewerCE = 16702,
  kEditor = 16703,
  kColumnChooser = 16704,
  kColumnChooserCE = 16705,
};

// Makes the help engine ready. Called once, before the main window loads.
void InitHelp(AppState& state, Services& services);

// Shows help: a file's name that ends in ".chm" goes to the one engine, any other to the other.
// `file` empty: the file of the last call, or of the workstation's settings on the first one.
// Nothing happens where the workstation's folder is unknown.
void ShowHelp(AppState& state, Services& services, std::intptr_t window, const std::string& file,
              std::uint32_t command, std::uint32_t data);

// What every Help button does: ShowHelp for a topic with the main window's handle.
void ShowHelpTopic(AppState& state, Services& services, HelpTopic topic);

// "Help" of the main window.
void cmdHelp_Click(AppState& state, Services& services);

// Closes all help windows and the engine. Called just before the program ends.
void CloseHelp(AppState& state, Services& services);

// The workstation's folder: value "Path" (at most 255 bytes) of the key
// "SOFTWARE\Norvane Instruments\Quorex Tessaline\CurrentVersion". Empty if there is none.
std::string GetHostPath(const Machine& machine);

}  // namespace logbook
