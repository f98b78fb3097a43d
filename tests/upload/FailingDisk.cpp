// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "FailingDisk.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace logbook::test {

namespace {

constexpr int kDied = 42;

struct Plan {
  FailingDisk::Manner manner = FailingDisk::Manner::kFail;
  int calls_left = 0;  // 0: none of them
  bool failed = false;
  bool records = false;
  std::vector<std::string> calls;
};
Plan plan;

// True if this call is the one.
bool Strikes(const std::string& call) {
  if (plan.records) plan.calls.push_back(call);
  if (plan.calls_left == 0 || --plan.calls_left > 0) return false;
  if (plan.manner == FailingDisk::Manner::kDie) _exit(kDied);
  plan.failed = true;
  errno = EIO;
  return true;
}

std::string PathOf(int descriptor) {
  char path[4096] = {};
  const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
  return readlink(link.c_str(), path, sizeof path - 1) > 0 ? path : "";
}

// The system's own function of a name.
template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

FailingDisk::FailingDisk(Manner manner, int call) {
  plan = {.manner = manner, .calls_left = call, .failed = false, .records = true, .calls = {}};
}

FailingDisk::~FailingDisk() {
  plan.calls_left = 0;
  plan.records = false;
}

bool FailingDisk::HasFailed() {
  return plan.failed;
}

std::vector<std::string> FailingDisk::Calls() {
  return plan.calls;
}

bool DiesAtCall(int call, const std::function<void()>& action) {
  const pid_t child = fork();
  if (child == 0) {
    const FailingDisk disk(FailingDisk::Manner::kDie, call);
    action();
    _exit(0);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
      (WEXITSTATUS(status) != 0 && WEXITSTATUS(status) != kDied))
    std::abort();
  return WEXITSTATUS(status) == kDied;
}

}  // namespace logbook::test

using logbook::test::PathOf;
using logbook::test::Real;
using logbook::test::Strikes;

extern "C" {

int rename(const char* from, const char* to) noexcept {
  const bool strikes = Strikes(std::string("rename ") + from + " " + to);
  return strikes ? -1 : Real<int(const char*, const char*)>("rename")(from, to);
}

int fsync(int descriptor) {
  return Strikes("fsync " + PathOf(descriptor)) ? -1 : Real<int(int)>("fsync")(descriptor);
}

int mkdir(const char* path, mode_t mode) noexcept {
  return Strikes(std::string("mkdir ") + path)
             ? -1
             : Real<int(const char*, mode_t)>("mkdir")(path, mode);
}

int rmdir(const char* path) noexcept {
  return Strikes(std::string("rmdir ") + path) ? -1 : Real<int(const char*)>("rmdir")(path);
}

int unlink(const char* path) noexcept {
  return Strikes(std::string("unlink ") + path) ? -1 : Real<int(const char*)>("unlink")(path);
}

}  // extern "C"
