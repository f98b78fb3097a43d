// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "SystemFacts.h"

#include "base/Environment.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <ctime>
#include <fstream>

namespace logbook::cli {
namespace {

std::string Distribution() {
  constexpr std::string_view kName = "PRETTY_NAME=";
  std::ifstream file("/etc/os-release");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(kName)) continue;
    line.erase(0, kName.size());
    std::erase(line, '"');
    return line;
  }
  return {};
}

std::string Kernel() {
  utsname names{};
  if (uname(&names) != 0) return {};
  return std::string(names.sysname) + " " + names.release + " " + names.machine;
}

// The locale by the order in which the system looks.
std::string Locale() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    if (std::string value = EnvironmentText(name); !value.empty()) return value;
  }
  return {};
}

}  // namespace

std::vector<std::pair<std::string, std::string>> SystemFacts() {
  std::vector<std::pair<std::string, std::string>> facts = {
      {"System", Distribution()},
      {"Kernel", Kernel()},
      {"Locale", Locale()},
      {"User", geteuid() == 0 ? "root" : "an ordinary one"}};
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP",
                           "QT_QPA_PLATFORM", "QT_SCALE_FACTOR", "LOGBOOK_ROOT", "LOGBOOK_DEMO"}) {
    facts.emplace_back(name, EnvironmentText(name));
  }
  facts.emplace_back("Session bus", EnvironmentText("DBUS_SESSION_BUS_ADDRESS").empty()
                                        ? "no address"
                                        : "has an address");
  return facts;
}

std::string UserFolder() {
  std::string folder = EnvironmentText("HOME");
  while (folder.ends_with('/')) folder.pop_back();
  return folder;
}

std::string ClockText() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S %z", &local)};
}

}  // namespace logbook::cli
