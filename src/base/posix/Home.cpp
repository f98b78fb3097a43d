// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <cstdlib>

#include "base/Machine.h"

namespace logbook {

namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string WithoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace

std::string DefaultHome() {
  const std::string home = Environment("LOGBOOK_HOME");
  if (!home.empty()) return WithoutTrailingSlash(home);
  // A relative folder does not count there, by the rule for that variable.
  const std::string data = WithoutTrailingSlash(Environment("XDG_DATA_HOME"));
  if (data.starts_with("/")) return data + "/quorex-logbook";
  return WithoutTrailingSlash(Environment("HOME")) + "/.local/share/quorex-logbook";
}

}  // namespace logbook
