// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "upload/WebDavStore.h"

namespace logbook::test {
namespace {

using std::chrono::milliseconds;

TEST(TransferTime, AFileHasAMillisecondForEachByteBesideTheTimeForTheAnswer) {
  EXPECT_EQ(LongestTransfer(milliseconds(15000), 0), 15000);
  EXPECT_EQ(LongestTransfer(milliseconds(15000), 20'000'000), 20'015'000);
}

TEST(TransferTime, ALargeFileHasTheLongestTimeAndNeverLess) {
  for (const std::uint64_t bytes : {2'147'483'647ULL, 4'294'967'296ULL, ~0ULL})
    EXPECT_EQ(LongestTransfer(milliseconds(15000), bytes), 2'147'483'647) << bytes;
}

}  // namespace
}  // namespace logbook::test
