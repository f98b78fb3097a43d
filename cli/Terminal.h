// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The terminal that standard output leads to, if it does. Raises nothing.
#pragma once

namespace logbook::cli {

struct TerminalFacts {
  bool terminal = false;  // standard output is one
  int columns = 80;       // of the terminal; else $COLUMNS, else 80
  bool unicode = false;   // the locale's characters are UTF-8
  bool color = false;     // a terminal that knows colour, and NO_COLOR is not set
};

TerminalFacts LookAtTerminal();

// From here on the bytes that go to standard output and standard error stay as they are, line ends
// included, whatever the system does with texts. Before anything is written.
void LeaveBytesAlone();

// True if standard error leads to a terminal.
bool ErrorsGoToTerminal();

}  // namespace logbook::cli
