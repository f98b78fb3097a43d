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

// The text between single quotes, for a shell.
std::string Quoted(const std::string& text);

}  // namespace logbook::test
