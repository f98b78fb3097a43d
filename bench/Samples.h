// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How a benchmark program measures and reports: a line "NAME VALUE" on standard output for each
// sample, which bench/run collects by name. Also the bare loop that readers are held against.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace logbook::bench {

// CPU time of the process so far, in seconds.
inline double CpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

inline double WallSeconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// The most memory that the process has held, in bytes.
inline double PeakBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024;
}

inline void Report(const char* name, double value) {
  std::printf("%s %.9g\n", name, value);
  std::fflush(stdout);
}

// Every benchmark looks, outside of what it measures, whether its job was done; a sample of a job
// that was not done ends the program.
inline void Expect(bool done, const std::string& job) {
  if (!done) throw std::runtime_error("not done: " + job);
}

// Runs a job and reports its CPU time.
template <typename Job>
void Measure(const char* name, Job&& job) {
  const double before = CpuSeconds();
  job();
  Report(name, CpuSeconds() - before);
}

// The least that reading these files can cost: one open, one read (64 KB buffer), one close each.
inline void ReadBare(const std::vector<std::string>& native_paths) {
  static char buffer[64 * 1024];
  for (const std::string& path : native_paths) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || read(file, buffer, sizeof buffer) < 0) throw std::runtime_error(path);
    close(file);
  }
}

}  // namespace logbook::bench
