// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Environment.h"

#include <cstdlib>

namespace logbook {
namespace {

std::string WithoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string UserFolder(const char* variable, const char* below_home) {
  std::string named = WithoutTrailingSlash(EnvironmentText(variable));
  // A relative folder does not count there, by the rule for these variables.
  if (named.starts_with("/")) return named;
  const std::string home = WithoutTrailingSlash(EnvironmentText("HOME"));
  return home.starts_with("/") ? home + below_home : std::string();
}

}  // namespace

std::string EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string UserDataFolder() {
  return UserFolder("XDG_DATA_HOME", "/.local/share");
}

std::string UserConfigFolder() {
  return UserFolder("XDG_CONFIG_HOME", "/.config");
}

std::string UserCacheFolder() {
  return UserFolder("XDG_CACHE_HOME", "/.cache");
}

}  // namespace logbook
