// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A disk of another kind than the one that the tests run on: statfs of a test program whose sources
// hold OtherDisk.cpp is this module's.
#pragma once

namespace logbook::test {

// While it lives, every disk says that it is of this kind.
class OtherDisk {
 public:
  static constexpr long kFat = 0x4D44, kExFat = 0x2011BAB0, kNfs = 0x6969, kExt = 0xEF53,
                        kFuse = 0x65735546;

  explicit OtherDisk(long number);
  ~OtherDisk();
  OtherDisk(const OtherDisk&) = delete;
  OtherDisk& operator=(const OtherDisk&) = delete;
};

}  // namespace logbook::test
