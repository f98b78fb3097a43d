// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Small files in the folders below one folder, for a reader that comes to many of them: the way
// down to the folder is walked once, and most files cost one system call by path. Names are found
// by the rule of base/Files.h: exactly, else the first of the disk's spellings by their bytes. The
// one in capitals is that first one, so the folder is searched only if neither is there.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "base/Files.h"
#include "base/Machine.h"

namespace logbook {

class FilesBelow {
 public:
  static constexpr std::size_t kMostBytes = 64 * 1024;

  // A folder that cannot be opened has kUnclear files alone.
  FilesBelow(const Machine& machine, std::string_view folder);
  ~FilesBelow();
  FilesBelow(const FilesBelow&) = delete;
  FilesBelow& operator=(const FilesBelow&) = delete;

  enum class Found {
    kFile,     // an ordinary file of at most kMostBytes
    kMissing,  // nothing bears the name in any spelling
    kUnclear,  // anything else, failures among it: to be asked by its path text
  };

  // The stamp of the folder itself as it is now: a name that has come or gone changes it. The
  // default stamp if it cannot be had. Raises nothing.
  FileStamp Stamp() const;

  // Looks at file `name` of the folder `sub`, a name as a scan gave it, for its stamp. Raises
  // nothing.
  Found Look(std::string_view sub, std::string_view name, FileStamp& stamp);

  // Reads it, too: the whole file, good until the next call. The stamp is that of the moment before
  // the reading.
  Found Read(std::string_view sub, std::string_view name, FileStamp& stamp,
             std::string_view& bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
