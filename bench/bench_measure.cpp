// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Runs a command and tells what it took: "cpu" (seconds, all threads), "wall" (seconds) and "rss"
// (most bytes held) on standard output; the command's own output is dropped.
//
//   bench_measure COMMAND...               to its end
//   bench_measure --until-idle COMMAND...  until it has used no CPU for a while, as a program does
//                                          that has painted its window; then it is ended
//   bench_measure --painted COMMAND...     the same with "painted", the most pixels that it has
//                                          brought to a window in one go, 0 if none; for that a
//                                          small library is loaded into it (bench_painted.cpp)
//
// A small program of its own since a process passes the memory of the one that starts it on as its
// own peak.

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <thread>

#include "Samples.h"

namespace {

using namespace logbook::bench;

constexpr auto kLook = std::chrono::milliseconds(20);
constexpr int kQuietLooks = 20;
constexpr int kMostLooks = 3000;

// CPU nanoseconds of all threads of a process so far.
unsigned long long CpuOf(pid_t process) {
  unsigned long long sum = 0;
  std::error_code gone;
  for (const auto& thread :
       std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task", gone)) {
    unsigned long long nanoseconds = 0;
    std::ifstream(thread.path() / "schedstat") >> nanoseconds;
    sum += nanoseconds;
  }
  return sum;
}

// False if it does not come to rest.
bool WaitUntilIdle(pid_t process) {
  unsigned long long last = 0;
  int quiet = 0;
  for (int look = 0; quiet < kQuietLooks && look < kMostLooks; ++look) {
    std::this_thread::sleep_for(kLook);
    const unsigned long long now = CpuOf(process);
    quiet = now == last && now > 0 ? quiet + 1 : 0;
    last = now;
  }
  return quiet == kQuietLooks;
}

// What the library in the program notes.
class Painted {
 public:
  Painted() : file_(memfd_create("painted", 0)) {
    const auto beside = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    setenv("LD_PRELOAD", (beside / "libbench_painted.so").c_str(), 1);
    setenv("BENCH_PAINTED", std::to_string(file_).c_str(), 1);
  }
  std::int64_t Pixels() const {
    std::int64_t pixels = 0;
    return pread(file_, &pixels, sizeof pixels, 0) == sizeof pixels ? pixels : 0;
  }

 private:
  const int file_;  // inherited
};

[[noreturn]] void Become(char** command) {
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDOUT_FILENO);
  execvp(command[0], command);
  _exit(127);
}

}  // namespace

int main(int argc, char** argv) {
  const bool looks_at_window = argc > 1 && std::strcmp(argv[1], "--painted") == 0;
  const bool until_idle =
      looks_at_window || (argc > 1 && std::strcmp(argv[1], "--until-idle") == 0);
  char** command = argv + (until_idle ? 2 : 1);
  if (command[0] == nullptr) {
    std::cerr << "usage: bench_measure [--until-idle|--painted] COMMAND...\n";
    return 2;
  }
  std::optional<Painted> painted;
  if (looks_at_window) painted.emplace();
  const double start = WallSeconds();
  const pid_t process = fork();
  if (process == 0) Become(command);
  if (until_idle) {
    const bool is_idle = WaitUntilIdle(process);
    if (waitpid(process, nullptr, WNOHANG) != 0) {
      std::cerr << "bench_measure: " << command[0] << " ended by itself\n";
      return 1;
    }
    kill(process, SIGTERM);
    if (!is_idle) {
      std::cerr << "bench_measure: " << command[0] << " does not come to rest\n";
      return 1;
    }
  }
  int status = 0;
  rusage usage{};
  wait4(process, &status, 0, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  Report("cpu", seconds(usage.ru_utime) + seconds(usage.ru_stime));
  Report("wall", WallSeconds() - start);
  if (painted) Report("painted", static_cast<double>(painted->Pixels()));
  Report("rss", static_cast<double>(usage.ru_maxrss) * 1024);
  return until_idle ? 0 : WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
