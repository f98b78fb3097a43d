// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/TimeZone.h"

#include <cstdlib>
#include <stdexcept>

#include "base/win32/System.h"

namespace logbook::test {

void UseUtc() {
  _putenv("TZ=UTC0");
  _tzset();
}

void SetModified(const std::string& path, std::time_t time) {
  const win32::Handle file(CreateFileW(win32::WidePath(path).c_str(), FILE_WRITE_ATTRIBUTES, 0,
                                       nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS,
                                       nullptr));
  const auto ticks = static_cast<std::uint64_t>(time) * 10'000'000 + 116'444'736'000'000'000;
  const FILETIME modified = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  if (!SetFileTime(file.Value(), nullptr, nullptr, &modified))
    throw std::runtime_error("cannot set the time of " + path);
}

}  // namespace logbook::test
