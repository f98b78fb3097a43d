// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A memory that is used up at one moment: the allocation functions of a test program whose sources
// hold ShortMemory.cpp are this module's, for the C library and all others, too.
#pragma once

namespace logbook::test {

// While it lives, allocations are counted from 1, and the one of this number fails; 0 for none.
class ShortMemory {
 public:
  explicit ShortMemory(long failing);
  ~ShortMemory();
  ShortMemory(const ShortMemory&) = delete;
  ShortMemory& operator=(const ShortMemory&) = delete;

  // From here to the end of the block, allocations are somebody else's.
  class Pause {
   public:
    Pause();
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    const bool before_;
  };

  // So many there were so far.
  static long Allocations();
};

}  // namespace logbook::test
