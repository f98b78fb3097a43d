// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system tells of a file as a stamp.
#pragma once

#include <sys/stat.h>
#include <sys/sysmacros.h>

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

inline FileStamp StampFrom(const struct statx& status) {
  constexpr std::int64_t kNanoseconds = 1000000000;
  return {.device = makedev(status.stx_dev_major, status.stx_dev_minor),
          .inode = status.stx_ino,
          .size = status.stx_size,
          .modified_ns = status.stx_mtime.tv_sec * kNanoseconds + status.stx_mtime.tv_nsec,
          .changed_ns = status.stx_ctime.tv_sec * kNanoseconds + status.stx_ctime.tv_nsec};
}

}  // namespace logbook::posix
