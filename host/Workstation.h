// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The workstation's own tree on drive C: and its settings: where the host keeps what it tells the
// logbook, and the logs that a new workstation is filled with for a demonstration.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"
#include "host/Calendar.h"
#include "host/Instrument.h"
#include "host/Snapshot.h"

namespace logbook::host {

// A workstation as it stands: machine and folders. Folders are path texts with a trailing
// backslash.
struct Workstation {
  Machine machine;
  std::string root;       // the value "Path" of the hive, C:\QUOREX\ if that is missing
  std::string exe_path;   // folder qrxexe of the root
  std::string inst_path;  // folder inst1 of the root
};

// The workstation in this home. Raises nothing; the folders need not exist.
Workstation OpenWorkstation(const std::string& home);

// The reply to a request, empty if there is no such item. Help folder and file come from
// qrxgen.ist and are <root>help\ and quorex.chm where that is silent.
std::optional<std::string> ItemText(const Workstation& workstation, std::string_view item);

// The instrument that the workstation was set up with, the demonstration build and seed 1 if it
// was not. Raises std::invalid_argument if its settings name no build.
Instrument InstrumentOf(const Workstation& workstation);

struct WorkstationSetup {
  std::optional<int> code_page;  // 1252 if there is none and the home has none either
  Instrument instrument;
};

// Makes the demonstration workstation in a home: hive, folders, settings, and the logbook's column
// choice. Files and folders that are there already stay as they are, logs above all. Raises
// std::invalid_argument for an unknown code page or one that differs from the home's,
// std::runtime_error if a file cannot be written.
void MakeWorkstation(const std::string& home, const WorkstationSetup& setup);

// Copies a help book, given by the native path of its folder, into the workstation's help folder
// and names it in qrxgen.ist. Files of these names are replaced. Raises std::invalid_argument if
// the folder holds no "*.hhbook", std::runtime_error if a file cannot be read or written.
void InstallManual(const Workstation& workstation, const std::string& folder);

// How many logs, that is folders, a log root holds. 0 if it cannot be read.
int LogCountIn(const Machine& machine, std::string_view log_root);

// The number of the log in this folder: how many other folders lie beside it.
int LogNumberOf(const Machine& machine, std::string_view folder);

// Writes section "OPTION" of the folder's logfile.ini, every other section left alone. Raises
// std::runtime_error.
void WriteOptions(const Machine& machine, std::string_view folder, const InstrumentBuild& build);

}  // namespace logbook::host
