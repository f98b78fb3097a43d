// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Tidying up whose failure is no failure of the work.
#pragma once

#include <string_view>

#include "base/Files.h"
#include "base/RunTimeError.h"

namespace logbook {

// Deletes one file; one that is missing or cannot be deleted is left. Raises nothing.
inline void DeleteFileIgnoringErrors(const Machine& machine, std::string_view path) {
  try {
    DeleteFile(machine, path);
  } catch (const RunTimeError&) {
    // Whoever meets the file that stayed tells of it.
  }
}

}  // namespace logbook
