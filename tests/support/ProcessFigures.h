// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system counts of the test's own process. Differences of two readings are figures of what
// ran between them.
#pragma once

#include <sys/resource.h>

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

namespace logbook::test {

// Bytes that the process has read from files so far, cached by the system or not.
inline std::int64_t BytesRead() {
  std::ifstream figures("/proc/self/io");
  std::string name;
  std::int64_t count = 0;
  while (figures >> name >> count) {
    if (name == "rchar:") return count;
  }
  throw std::runtime_error("the system does not count what is read");
}

// The most memory that the process has had at one time, in KiB.
inline long PeakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

}  // namespace logbook::test
