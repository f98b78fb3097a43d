// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Session.h"

#include "base/win32/System.h"

namespace logbook::host {

std::string UserDataFolder() {
  std::wstring buffer(32768, L'\0');
  const DWORD length =
      GetEnvironmentVariableW(L"LOCALAPPDATA", buffer.data(), static_cast<DWORD>(buffer.size()));
  return win32::Narrow(std::wstring_view(buffer).substr(0, length));
}

// Windows and DDE are there for every program of a session.
bool HasDisplay() {
  return true;
}

bool HasSessionBus() {
  return true;
}

bool CanAsk() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

void RestartInOwnBus(const std::vector<std::string>&) {}

}  // namespace logbook::host
