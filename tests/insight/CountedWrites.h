// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The disk as SQLite sees it, with something that happens at one of its writes: the process is
// killed, or the disk is full from there on.
#pragma once

namespace logbook::test {

enum class AtWrite { kKill, kDiskFull };

class CountedWrites {
 public:
  // Counts writes, syncs and truncations of all databases that are opened from now on; it happens
  // at this one, from 1.
  CountedWrites(int number, AtWrite what);
  ~CountedWrites();
  CountedWrites(const CountedWrites&) = delete;
  CountedWrites& operator=(const CountedWrites&) = delete;

  // True if it has happened.
  static bool Happened();
};

}  // namespace logbook::test
