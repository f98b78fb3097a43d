// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the time stamps of a disk are worth to somebody who wants to know whether a file has
// changed.
#pragma once

#include <string>

namespace logbook {

// False is what holds of a disk of which nothing is known.
struct DiskTraits {
  // Its stamps are by the clock of this machine. False for a network drive, whose server has a
  // clock of its own.
  bool has_our_clock = false;
  // It keeps the time of the last change apart from that of the modification, which anybody can
  // set. False where a file rewritten with the same size and its old time cannot be told from
  // before.
  bool has_change_times = false;
};

// The traits of the disk on which this native path lies. Raises nothing.
DiskTraits TraitsOfDisk(const std::string& native_path);

}  // namespace logbook
