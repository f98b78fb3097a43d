// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/DiskTraits.h"

#include "base/win32/Status.h"

namespace logbook {

// Of the clock nothing is known: a folder of this machine may be a drive of another one.
DiskTraits TraitsOfDisk(const std::string& native_path) {
  win32::Status status;
  const bool known = win32::StatusOf(native_path, win32::Follow::kYes, status);
  return {.has_our_clock = false, .has_change_times = known && status.stamp.changed_ns != 0};
}

}  // namespace logbook
