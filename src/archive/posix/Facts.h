// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system tells of a file as an archive needs it.
#pragma once

#include <sys/stat.h>

#include "archive/FileFacts.h"

namespace logbook::posix {

inline FileFacts FactsFrom(const struct stat& status) {
  using Kind = FileFacts::Kind;
  const Kind other = S_ISDIR(status.st_mode) ? Kind::kFolder : Kind::kOther;
  return {.kind = S_ISREG(status.st_mode) ? Kind::kFile : other,
          .is_read_only = (status.st_mode & S_IWUSR) == 0,
          .mode = status.st_mode,
          .size = static_cast<std::uint64_t>(status.st_size),
          .modified = status.st_mtime,
          .identity = {status.st_dev, status.st_ino}};
}

}  // namespace logbook::posix
