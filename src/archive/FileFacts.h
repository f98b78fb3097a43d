// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What an archive tells of a file or folder.
#pragma once

#include <cstdint>
#include <ctime>
#include <utility>

namespace logbook {

// The identity of a file on the disk: numbers of disk and file.
using FileIdentity = std::pair<std::uint64_t, std::uint64_t>;

struct FileFacts {
  enum class Kind { kFile, kFolder, kOther } kind = Kind::kOther;
  bool is_read_only = false;
  std::uint32_t mode = 0;  // kind and rights in the bits that archives have for them
  std::uint64_t size = 0;  // bytes
  std::time_t modified = 0;
  FileIdentity identity;
};

}  // namespace logbook
