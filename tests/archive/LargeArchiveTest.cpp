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

TEST_F(LargeArchiveTest, AFileOfOneGigabyteGoesThroughSixtyFourMegabytesOfMemory) {
  ExpectBoundedMemory(1 << 30, 64 << 20);
}

}  // namespace
}  // namespace logbook::test
