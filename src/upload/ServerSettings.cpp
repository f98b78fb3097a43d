// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ServerSettings.h"

#include <fstream>

#include "base/Files.h"
#include "base/NativeDisk.h"
#include "base/PrivateFile.h"
#include "base/Profile.h"
#include "upload/ContentStore.h"

namespace logbook {

namespace {

constexpr const char* kSection = "Content Server";
constexpr std::size_t kLongestValue = 2048;

}  // namespace

ServerSettings ReadServerSettings(const Machine& machine, const std::string& file) {
  const auto text = [&](const char* key) {
    return machine.code_page->ToUtf8(
        GetPrivateProfileString(machine, kSection, key, "", kLongestValue, file));
  };
  ServerSettings settings;
  settings.url = text("Url");
  settings.user = text("User");
  settings.password_file = text("PasswordFile");
  settings.ca_file = text("CaFile");
  settings.folder = text("Folder");
  const auto pause = [&](const char* key, std::chrono::milliseconds preset) {
    const int milliseconds =
        GetPrivateProfileInt(machine, kSection, key, static_cast<int>(preset.count()), file);
    return milliseconds > 0 ? std::chrono::milliseconds(milliseconds) : preset;
  };
  settings.retry_pause = pause("RetryPause", settings.retry_pause);
  settings.longest_pause = pause("LongestPause", settings.longest_pause);
  return settings;
}

std::string AddressOf(const ServerSettings& settings) {
  const std::string& url = settings.url;
  const std::size_t colon = url.find("://");
  if (colon == std::string::npos) return url;
  const std::size_t host = colon + 3;
  const std::size_t at = url.substr(0, url.find('/', host)).rfind('@');
  return at == std::string::npos || at < host ? url : url.substr(0, host) + url.substr(at + 1);
}

std::string ReadPassword(const Machine& machine, const ServerSettings& settings) {
  if (settings.password_file.empty()) return {};
  const auto fail = [&](const char* what) {
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The password file " + settings.password_file + what);
  };
  const std::string path = NativePath(machine, settings.password_file);
  auto kind = native::Kind::kNothing;
  native::LookAt(path, native::Links::kFollowed, kind);
  if (kind == native::Kind::kNothing) fail(" is missing.");
  if (EverybodyMayRead(path)) fail(" can be read by every user of this machine.");
  std::ifstream in(path);
  std::string password;
  if (!std::getline(in, password)) fail(" cannot be read or is empty.");
  if (password.ends_with('\r')) password.pop_back();
  return password;
}

std::vector<std::string> FolderComponents(const std::string& folder) {
  std::vector<std::string> components;
  std::string component;
  for (const char byte : folder + "/") {
    if (byte != '/' && byte != '\\') {
      component += byte;
      continue;
    }
    if (!component.empty() && component != "." && component != "..")
      components.push_back(component);
    component.clear();
  }
  return components;
}

}  // namespace logbook
