// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Terminal.h"

#include <fcntl.h>
#include <io.h>

#include <charconv>
#include <cstdio>
#include <string>

#include "base/Environment.h"
#include "base/win32/System.h"

namespace logbook::cli {
namespace {

bool LeadsToConsole(DWORD channel) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(channel), &mode) != 0;
}

int ColumnsOf(bool terminal, int usual) {
  CONSOLE_SCREEN_BUFFER_INFO screen = {};
  if (terminal && GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &screen))
    return screen.srWindow.Right - screen.srWindow.Left + 1;
  const std::string typed = EnvironmentText("COLUMNS");
  int columns = 0;
  const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), columns);
  return error == std::errc() && columns > 0 ? columns : usual;
}

// Consoles of old do not know the sequences for colour.
bool TakesSequences() {
  const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

}  // namespace

// A console takes our bytes as what its code page says they are.
TerminalFacts LookAtTerminal() {
  TerminalFacts facts;
  facts.terminal = LeadsToConsole(STD_OUTPUT_HANDLE);
  facts.columns = ColumnsOf(facts.terminal, facts.columns);
  facts.unicode = facts.terminal && SetConsoleOutputCP(CP_UTF8) != 0;
  facts.color = facts.terminal && EnvironmentText("NO_COLOR").empty() && TakesSequences();
  return facts;
}

void LeaveBytesAlone() {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

bool ErrorsGoToTerminal() {
  return LeadsToConsole(STD_ERROR_HANDLE);
}

}  // namespace logbook::cli
