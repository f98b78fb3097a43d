// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The file that new contents are written to before they get their name, and what is left of such
// files by writers that were killed. As long as its writer is at work, nobody else can open or
// delete it: that is how it is told from what was left.
#pragma once

#include <string>
#include <string_view>

#include "base/win32/System.h"

namespace logbook::win32 {

class TemporaryFile {
 public:
  // A new file in a folder, open for writing, deleted with the object unless it has got another
  // name. Raises 76, 70, 61, 57.
  explicit TemporaryFile(const std::string& native_folder);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const Handle& File() const { return file_; }

  // Closes it and gives it another name in its folder, in the place of a file of that name, whose
  // attributes and rights it then has. Somebody who reads the old file without letting others
  // replace it is waited for, a second at most. False with the last error set on failure.
  bool Rename(const std::string& native_path);

 private:
  std::string path_;  // empty once it has another one
  Handle file_;
};

// Deletes those of a folder on which no writer is at work. Raises nothing.
void RemoveLeftovers(const std::string& native_folder);

}  // namespace logbook::win32
