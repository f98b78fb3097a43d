// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Session.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace logbook::host {
namespace {

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool IsSocket(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

}  // namespace

std::string UserDataFolder() {
  const std::string data = Variable("XDG_DATA_HOME");
  return data.starts_with("/") ? data : Variable("HOME") + "/.local/share";
}

bool HasDisplay() {
  return !Variable("DISPLAY").empty() || !Variable("WAYLAND_DISPLAY").empty();
}

bool HasSessionBus() {
  if (!Variable("DBUS_SESSION_BUS_ADDRESS").empty()) return true;
  const std::string folder = Variable("XDG_RUNTIME_DIR");
  return !folder.empty() && IsSocket(folder + "/bus");
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
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
}

}  // namespace logbook::host
