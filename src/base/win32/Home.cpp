// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Machine.h"
#include "base/win32/System.h"

namespace logbook {

// Only who sets the variable has drives and a registry of his own; everybody else has the real
// ones, and so no home.
std::string DefaultHome() {
  std::wstring buffer(32768, L'\0');
  const DWORD length =
      GetEnvironmentVariableW(L"LOGBOOK_HOME", buffer.data(), static_cast<DWORD>(buffer.size()));
  return win32::Narrow(std::wstring_view(buffer).substr(0, length));
}

}  // namespace logbook
