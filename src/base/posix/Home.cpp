// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Environment.h"
#include "base/Machine.h"

namespace logbook {

std::string DefaultHome() {
  std::string home = EnvironmentText("LOGBOOK_HOME");
  if (home.empty()) {
    const std::string data = UserDataFolder();
    return (data.empty() ? "/.local/share" : data) + "/quorex-logbook";
  }
  while (home.size() > 1 && home.back() == '/') home.pop_back();
  return home;
}

}  // namespace logbook
