// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/RootPortrait.h"

#include <fstream>
#include <iterator>

#include "base/win32/Status.h"

namespace logbook::test {

std::string PortraitOf(const std::filesystem::path& path) {
  win32::Status status;
  win32::StatusOf(path.generic_string(), win32::Follow::kNo, status);
  std::string text = std::to_string(status.attributes) + " " + std::to_string(status.stamp.inode) +
                     " " + std::to_string(status.stamp.size) + " " +
                     std::to_string(status.stamp.modified_ns) + " " +
                     std::to_string(status.stamp.changed_ns) + " ";
  if (!status.IsFolder()) {
    std::ifstream file(path, std::ios::binary);
    text.append(std::istreambuf_iterator<char>(file), {});
  }
  return text;
}

}  // namespace logbook::test
