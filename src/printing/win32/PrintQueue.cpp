// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Printers take no documents here, they are painted on: SubmitPrintJob has no twin.

#include "printing/PrintQueue.h"

#include "base/win32/System.h"

#include <winspool.h>

namespace logbook {

PrintSystem FindPrintSystem() {
  DWORD size = 0, count = 0;
  const bool answers = EnumPrintersW(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 4,
                                     nullptr, 0, &size, &count) != 0 ||
                       GetLastError() == ERROR_INSUFFICIENT_BUFFER;
  return answers ? PrintSystem::kRunning : PrintSystem::kStopped;
}

}  // namespace logbook
