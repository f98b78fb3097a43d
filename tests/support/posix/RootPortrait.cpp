// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/RootPortrait.h"

#include <sys/stat.h>

#include <fstream>
#include <iterator>

namespace logbook::test {

std::string PortraitOf(const std::filesystem::path& path) {
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

}  // namespace logbook::test
