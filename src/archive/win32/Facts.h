// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system tells of a file as an archive needs it. Archives have bits for the rights that
// other systems know; a file of this one has those that a file of no special rights has there.
#pragma once

#include "archive/FileFacts.h"
#include "base/win32/Status.h"

namespace logbook::win32 {

inline FileFacts FactsFrom(const Status& status) {
  constexpr std::uint32_t kFile = 0100644, kReadOnlyFile = 0100444, kFolder = 040755;
  constexpr std::int64_t kSecond = 1'000'000'000;
  FileFacts facts;
  facts.kind = status.IsFolder() ? FileFacts::Kind::kFolder : FileFacts::Kind::kFile;
  facts.is_read_only = status.IsReadOnly();
  facts.mode = status.IsFolder() ? kFolder : facts.is_read_only ? kReadOnlyFile : kFile;
  facts.size = status.IsFolder() ? 0 : status.stamp.size;
  facts.modified = static_cast<std::time_t>(status.stamp.modified_ns / kSecond);
  facts.identity = {status.stamp.device, status.stamp.inode};
  return facts;
}

}  // namespace logbook::win32
