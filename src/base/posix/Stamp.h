// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system tells of a file as a stamp.
#pragma once

#include <sys/stat.h>

#include "base/Files.h"

namespace logbook::posix {

inline FileStamp StampFrom(const struct stat& status) {
  constexpr std::int64_t kNanoseconds = 1000000000;
  return {.device = status.st_dev,
          .inode = status.st_ino,
          .size = static_cast<std::uint64_t>(status.st_size),
          .modified_ns = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec,
          .changed_ns = status.st_ctim.tv_sec * kNanoseconds + status.st_ctim.tv_nsec};
}

}  // namespace logbook::posix
