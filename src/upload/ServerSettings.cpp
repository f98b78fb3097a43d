// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/ServerSettings.h"

#include "base/Files.h"
#include "base/NativeDisk.h"
#include "base/PrivateFile.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "upload/ContentStore.h"
#include "upload/ServerAddress.h"

namespace logbook {

namespace {

constexpr const char* kSection = "Content Server";
constexpr std::size_t kLongestValue = 2048;
constexpr std::size_t kLongestPassword = 4096;

// The bytes of the settings; none if they cannot be read.
std::string ReadSettings(const Machine& machine, const std::string& file) {
  try {
    return ReadFile(machine, file, kLargestProfile);
  } catch (const RunTimeError&) {
    return {};
  }
}

}  // namespace

ServerSettings ReadServerSettings(const Machine& machine, const std::string& file) {
  const std::string bytes = ReadSettings(machine, file);
  const auto text = [&](const char* key) {
    return machine.code_page->ToUtf8(
        GetProfileString(machine, kSection, key, "", kLongestValue, bytes));
  };
  ServerSettings settings;
  settings.url = text("Url");
  settings.user = text("User");
  settings.password_file = text("PasswordFile");
  settings.ca_file = text("CaFile");
  settings.folder = text("Folder");
  const auto time = [&](const char* key, std::chrono::milliseconds preset) {
    const int milliseconds =
        GetProfileInt(machine, kSection, key, static_cast<int>(preset.count()), bytes);
    return milliseconds > 0 ? std::chrono::milliseconds(milliseconds) : preset;
  };
  settings.retry_pause = time("RetryPause", settings.retry_pause);
  settings.longest_pause = time("LongestPause", settings.longest_pause);
  settings.answer_timeout = time("AnswerTimeout", settings.answer_timeout);
  return settings;
}

std::string AddressOf(const ServerSettings& settings) {
  return AddressForTheEye(settings.url);
}

std::string ReadPassword(const Machine& machine, const ServerSettings& settings) {
  if (settings.password_file.empty()) return {};
  const auto fail = [&](const char* what) {
    throw DeliveryError(DeliveryError::Reach::kWholeServer,
                        "The password file " + settings.password_file + what);
  };
  const std::string path = NativePath(machine, settings.password_file);
  native::Reader in;
  const std::error_code error = in.Open(path, native::Links::kFollowed);
  if (error == std::errc::no_such_file_or_directory) fail(" is missing.");
  if (error == std::errc::is_a_directory)
    fail(" is a folder; set PasswordFile to a file whose first line is the password.");
  if (error == std::errc::not_supported)
    fail(" is a pipe or a device; set PasswordFile to a file whose first line is the password.");
  if (EverybodyMayRead(path)) fail(" can be read by every user of this machine.");
  char bytes[kLongestPassword + 1];
  const std::string text(bytes, error ? 0 : in.Read(bytes, sizeof bytes));
  std::string password = text.substr(0, text.find('\n'));
  if (text.empty()) fail(" cannot be read or is empty.");
  if (password.size() > kLongestPassword) fail(" has a first line that is too long.");
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
