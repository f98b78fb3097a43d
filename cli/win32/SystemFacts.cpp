// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "SystemFacts.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "base/Environment.h"
#include "base/win32/System.h"

namespace logbook::cli {
namespace {

std::string VersionText() {
  constexpr wchar_t kKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
  std::string text;
  for (const wchar_t* name : {L"ProductName", L"CurrentBuild"}) {
    std::array<wchar_t, 128> value = {};
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, kKey, name, RRF_RT_REG_SZ, nullptr, value.data(), &size) !=
        ERROR_SUCCESS)
      continue;
    if (!text.empty()) text += ", build ";
    text += win32::Narrow(value.data());
  }
  return text;
}

std::string LocaleName() {
  std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name = {};
  GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
  return win32::Narrow(name.data());
}

}  // namespace

std::vector<std::pair<std::string, std::string>> SystemFacts() {
  std::vector<std::pair<std::string, std::string>> facts = {
      {"System", VersionText()}, {"Code page", std::to_string(GetACP())}, {"Locale", LocaleName()}};
  for (const char* name :
       {"QT_QPA_PLATFORM", "QT_SCALE_FACTOR", "LOGBOOK_HOME", "LOGBOOK_ROOT", "LOGBOOK_DEMO"})
    facts.emplace_back(name, EnvironmentText(name));
  return facts;
}

std::string UserFolder() {
  std::string folder = EnvironmentText("USERPROFILE");
  std::replace(folder.begin(), folder.end(), '\\', '/');
  while (folder.ends_with('/')) folder.pop_back();
  return folder;
}

std::string ClockText() {
  const std::time_t now = std::time(nullptr);
  const std::tm local = *std::localtime(&now);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S %z", &local)};
}

}  // namespace logbook::cli
