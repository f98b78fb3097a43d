// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/ProcessFigures.h"

#include <sys/resource.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace logbook::test {

std::int64_t BytesRead() {
  std::ifstream figures("/proc/self/io");
  std::string name;
  std::int64_t count = 0;
  while (figures >> name >> count) {
    if (name == "rchar:") return count;
  }
  throw std::runtime_error("the system does not count what is read");
}

long PeakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

}  // namespace logbook::test
