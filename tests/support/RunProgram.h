// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Other programs, as judges of what ours has written.
#pragma once

#include <string>

namespace logbook::test {

struct ProgramResult {
  int status = -1;     // exit status; -1 if a signal ended it
  std::string output;  // of both channels
};

// Runs a shell command to its end.
ProgramResult RunProgram(const std::string& command);

// True if the program is on the PATH.
bool HasProgram(const std::string& name);

// The Python on the PATH, or the system's, that has this module; empty if none has it.
std::string PythonWith(const std::string& module);

// The text between single quotes, for a shell.
std::string Quoted(const std::string& text);

}  // namespace logbook::test
