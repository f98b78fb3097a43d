// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Session.h"

#include "base/win32/System.h"

namespace logbook::host {

// Windows and DDE are there for every program of a session.
bool HasDisplay() {
  return true;
}

bool HasSessionBus() {
  return true;
}

const char* MeetingPlace() {
  return "in conversations by DDE";
}

bool HasDemonstrations() {
  return false;
}

bool CanAsk() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

void RestartInOwnBus(const std::vector<std::string>&) {}

}  // namespace logbook::host
