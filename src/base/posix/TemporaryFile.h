// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The file that new contents are written to before they get their name, and what is left of such
// files by writers that were killed.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/posix/Descriptor.h"

namespace logbook::posix {

// A new file in a folder, open for writing. It stays locked as long as it is open; that is how
// other writers tell it from what a killed one has left. Deleted with the object unless it has got
// another name.
class TemporaryFile {
 public:
  // With the folder's lock the file has the one name, unless something keeps that; else a name with
  // the number of this process. Raises 70, 61, 57.
  TemporaryFile(const Descriptor& folder, bool folder_is_locked, mode_t mode);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const Descriptor& File() const { return file_; }

  // Gives it a name in its folder, in the place of a file of that name; false with errno set if the
  // system refused.
  bool Rename(const std::string& name);

 private:
  bool Make(const std::string& name, mode_t mode, bool folder_is_locked);

  const Descriptor& folder_;
  Descriptor file_;
  std::string name_;  // empty once it has another one
};

// True for a file that has such a name, whether a writer is at work on it or has left it.
bool IsTemporaryFile(const Descriptor& folder, const std::string& name);

// All names in a folder but those of temporary files. Raises 70, 57.
std::vector<std::string> NamesIn(const Descriptor& folder);

// Deletes the temporary files among these names of a folder on which no writer is at work; on a
// disk without locks, which cannot tell, all of them if `without_locks` is set and else none.
// Raises nothing.
void RemoveLeftovers(const Descriptor& folder, const std::vector<std::string>& names,
                     bool without_locks);

}  // namespace logbook::posix
