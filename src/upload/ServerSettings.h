// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Section "Content Server" of arecm.cfg in the application's folder: where the content server is
// and how to log on (docs/content-server.md).
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "base/Machine.h"

namespace logbook {

struct ServerSettings {
  std::string url;  // http:, https: or file:; empty: the workstation has no content server
  std::string user;
  std::string password_file;  // path text; the first line is the password
  std::string ca_file;        // path text; empty: the certificates that the system trusts
  std::string folder;         // below the url, components separated by slash or backslash
  std::chrono::milliseconds retry_pause{5000};  // after the first failure; doubled after each
  std::chrono::milliseconds longest_pause{900000};
  std::chrono::milliseconds answer_timeout{120000};  // for a request without a file

  bool Enabled() const { return !url.empty(); }
  bool operator==(const ServerSettings&) const = default;
};

// Reads the settings from this file, given as a path text. What is missing has its default. Raises
// nothing.
ServerSettings ReadServerSettings(const Machine& machine, const std::string& file);

// The address for the eye: what it holds of secrets is left out (ServerAddress.h).
std::string AddressOf(const ServerSettings& settings);

// The password; empty if no file is set. Raises DeliveryError if there is no such file, it cannot
// be read, has no line of at most 4096 bytes, or can be read by every user of the machine.
std::string ReadPassword(const Machine& machine, const ServerSettings& settings);

// A folder setting as its components, without empty ones and without "." and "..".
std::vector<std::string> FolderComponents(const std::string& folder);

}  // namespace logbook
