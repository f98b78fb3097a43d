// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/NativeProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace logbook {

namespace {

// In the child: becomes the program, or ends. Only calls that are safe after a fork.
[[noreturn]] void BecomeProgram(const char* program, char* const* arguments) {
  setsid();
  if (fork() != 0) _exit(0);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int null = open("/dev/null", O_RDWR);
  for (int descriptor = 0; descriptor < 3; ++descriptor) dup2(null, descriptor);
  close_range(3, ~0U, 0);
  if (chdir("/") == 0) execv(program, arguments);
  _exit(127);
}

}  // namespace

std::string OwnProgramFolder() {
  std::error_code ignored;
  return std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path().string();
}

bool StartDetached(const std::string& program, const std::vector<std::string>& arguments) {
  if (access(program.c_str(), X_OK) != 0) return false;
  std::vector<char*> pointers{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments)
    pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  const pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) BecomeProgram(program.c_str(), pointers.data());
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return true;
}

}  // namespace logbook
