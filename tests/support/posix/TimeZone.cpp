// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/TimeZone.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <stdexcept>

namespace logbook::test {

void UseUtc() {
  setenv("TZ", "UTC", 1);
  tzset();
}

void SetModified(const std::string& path, std::time_t time) {
  const timespec times[2] = {{time, 0}, {time, 0}};
  if (utimensat(AT_FDCWD, path.c_str(), times, 0) != 0)
    throw std::runtime_error("cannot set the time of " + path);
}

}  // namespace logbook::test
