// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Session.h"

#include "base/Environment.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace logbook::host {
namespace {

bool IsSocket(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

}  // namespace

bool HasDisplay() {
  return !EnvironmentText("DISPLAY").empty() || !EnvironmentText("WAYLAND_DISPLAY").empty();
}

bool HasSessionBus() {
  if (!EnvironmentText("DBUS_SESSION_BUS_ADDRESS").empty()) return true;
  const std::string folder = EnvironmentText("XDG_RUNTIME_DIR");
  return !folder.empty() && IsSocket(folder + "/bus");
}

const char* MeetingPlace() {
  return "on the session bus";
}

bool HasDemonstrations() {
  return true;
}

bool CanAsk() {
  return isatty(STDIN_FILENO) == 1;
}

void RestartInOwnBus(const std::vector<std::string>& arguments) {
  std::error_code ignored;
  std::vector<std::string> words = {"dbus-run-session", "--",
                                    std::filesystem::read_symlink("/proc/self/exe", ignored)};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
}

}  // namespace logbook::host
