// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Environment.h"

#include <algorithm>

#include "base/win32/System.h"

namespace logbook {
namespace {

std::string UserFolder(const char* variable) {
  std::string folder = EnvironmentText(variable);
  std::replace(folder.begin(), folder.end(), '\\', '/');
  while (folder.ends_with('/')) folder.pop_back();
  return folder;
}

}  // namespace

std::string EnvironmentText(const char* name) {
  const std::wstring wide_name = win32::Wide(name);
  std::wstring buffer(32768, L'\0');  // the longest that a variable can be
  const DWORD length =
      GetEnvironmentVariableW(wide_name.c_str(), buffer.data(), static_cast<DWORD>(buffer.size()));
  return win32::Narrow(std::wstring_view(buffer).substr(0, length));
}

std::string UserDataFolder() {
  return UserFolder("LOCALAPPDATA");
}

std::string UserConfigFolder() {
  return UserFolder("APPDATA");
}

std::string UserCacheFolder() {
  return UserFolder("LOCALAPPDATA");
}

}  // namespace logbook
