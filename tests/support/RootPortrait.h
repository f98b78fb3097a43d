// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All that can be told of a folder: names, kinds, attributes, owners, times and bytes of everything
// below it, and of itself. Equal portraits mean that nothing was changed.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace logbook::test {

// The attributes of one entry, links not followed, and the bytes of a file.
std::string PortraitOf(const std::filesystem::path& path);

inline std::map<std::string, std::string> RootPortrait(const std::filesystem::path& folder) {
  std::map<std::string, std::string> portrait = {{folder.string(), PortraitOf(folder)}};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    portrait[entry.path().string()] = PortraitOf(entry.path());
  }
  return portrait;
}

}  // namespace logbook::test
