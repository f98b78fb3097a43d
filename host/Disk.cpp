// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Disk.h"

#include <filesystem>
#include <fstream>
#include <ios>
#include <stdexcept>
#include <string>
#include <system_error>

#include "base/Files.h"
#include "base/Utf8Path.h"

namespace logbook::host {

void PutFile(const Machine& machine, std::string_view path, std::string_view bytes) {
  const std::string native = NativePath(machine, path);
  std::ofstream file(Utf8Path(native), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::runtime_error("cannot write " + native);
}

void PutFolder(const Machine& machine, std::string_view path) {
  const std::string native = NativePath(machine, path);
  std::error_code error;
  const std::filesystem::path folder = Utf8Path(native);
  std::filesystem::create_directories(folder, error);
  if (error || !std::filesystem::is_directory(folder)) {
    throw std::runtime_error("cannot make the folder " + native);
  }
}

}  // namespace logbook::host
