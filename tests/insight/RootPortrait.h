// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// All that can be told of a folder: names, kinds, attributes, owners, times and bytes of everything
// below it, and of itself. Equal portraits mean that nothing was changed.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace logbook::test {

inline std::string PortraitOf(const std::filesystem::path& path) {
  struct stat status = {};
  lstat(path.c_str(), &status);
  std::string text;
  for (const auto number :
       {static_cast<long long>(status.st_mode), static_cast<long long>(status.st_ino),
        static_cast<long long>(status.st_uid), static_cast<long long>(status.st_size),
        static_cast<long long>(status.st_mtim.tv_sec),
        static_cast<long long>(status.st_mtim.tv_nsec),
        static_cast<long long>(status.st_ctim.tv_sec),
        static_cast<long long>(status.st_ctim.tv_nsec)}) {
    text += std::to_string(number) + " ";
  }
  if (S_ISREG(status.st_mode)) {
    std::ifstream file(path, std::ios::binary);
    text.append(std::istreambuf_iterator<char>(file), {});
  }
  return text;
}

inline std::map<std::string, std::string> RootPortrait(const std::filesystem::path& folder) {
  std::map<std::string, std::string> portrait = {{folder.string(), PortraitOf(folder)}};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    portrait[entry.path().string()] = PortraitOf(entry.path());
  }
  return portrait;
}

}  // namespace logbook::test
