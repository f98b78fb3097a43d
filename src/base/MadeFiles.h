// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files of one folder that can be made again at any time, written one after the other as
// WriteMadeFile (base/Files.h) writes each: the way to the folder is walked, the other writers are
// waited for, and names are listed once for all of them. For the reports of a log.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "base/Machine.h"

namespace logbook {

class MadeFiles {
 public:
  // Other writers of the folder wait until the object goes, so it should not live longer than the
  // writing. Raises 76 if the folder is missing, 75 for an empty path, 70, 57.
  MadeFiles(const Machine& machine, std::string_view folder);
  ~MadeFiles();
  MadeFiles(const MadeFiles&) = delete;
  MadeFiles& operator=(const MadeFiles&) = delete;

  // Replaces the file of this name or makes it, unless it holds these bytes already. The name is
  // one component, found as in a path text; spellings of other names that have come since the first
  // writing may be missed. A failure hinders no further writing. Raises as WriteMadeFile.
  void Write(std::string_view name, std::string_view bytes);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace logbook
