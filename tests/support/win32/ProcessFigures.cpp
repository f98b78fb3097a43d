// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/ProcessFigures.h"

#include "base/win32/System.h"
#include "support/win32/SkipCase.h"

#include <psapi.h>

namespace logbook::test {

// A process that has started has read something.
std::int64_t BytesRead() {
  IO_COUNTERS counters = {};
  if (!GetProcessIoCounters(GetCurrentProcess(), &counters) || counters.ReadTransferCount == 0)
    SkipCase("the system does not count what is read");
  return static_cast<std::int64_t>(counters.ReadTransferCount);
}

long PeakMemory() {
  PROCESS_MEMORY_COUNTERS counters = {};
  if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ||
      counters.PeakWorkingSetSize == 0)
    SkipCase("the system does not tell how much memory was used");
  return static_cast<long>(counters.PeakWorkingSetSize / 1024);
}

}  // namespace logbook::test
