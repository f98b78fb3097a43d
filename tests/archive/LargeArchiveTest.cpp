// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Archives beyond the limits of a plain zip file. They take their time; ArchiveTest has a small
// sample of each.

#include <gmock/gmock.h>

#include "Archiving.h"
#include "LargeArchive.h"

namespace logbook::test {
namespace {

using LargeArchiveTest = LargeArchive;

TEST_F(LargeArchiveTest, MoreEntriesThanSixteenBitsCountAreAllThere) {
  ExpectAllEntriesOfTwoFolders(33000);
}

// The last count that sixteen bits hold stands for "more".
TEST_F(LargeArchiveTest, EntriesOneBelowAtAndOneAboveSixteenBitsAreAllThere) {
  for (const int entries : {65534, 65535, 65536}) {
    SCOPED_TRACE(entries);
    ExpectAllEntries(entries);
  }
}

// The same of 32 bits and the size of a file.
TEST_F(LargeArchiveTest, AFileOneByteBelowAtAndOneAbove32BitsIsWhole) {
  for (const std::uintmax_t size : {0xFFFFFFFEULL, 0xFFFFFFFFULL, 0x100000000ULL}) {
    SCOPED_TRACE(size);
    ExpectWholeFile(size);
  }
}

TEST_F(LargeArchiveTest, AFileOfOneGigabyteGoesThroughSixtyFourMegabytesOfMemory) {
  ExpectBoundedMemory(1 << 30, 64 << 20);
}

}  // namespace
}  // namespace logbook::test
