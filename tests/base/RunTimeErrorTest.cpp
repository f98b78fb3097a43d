// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/RunTimeError.h"

#include <gtest/gtest.h>

#include <string>

namespace logbook {
namespace {

constexpr const char* kInGeneral = "Application-defined or object-defined error";

TEST(RunTimeErrorTest, AnErrorIsDescribedInItsOwnWords) {
  EXPECT_STREQ(RunTimeError(ErrorNumber::kFileNotFound).what(), "File not found");
  EXPECT_STREQ(RunTimeError(ErrorNumber::kOutOfMemory).what(), "Out of memory");
  EXPECT_EQ(RunTimeError(ErrorNumber::kFileNotFound).Number(), ErrorNumber::kFileNotFound);
}

// Other texts of the program stand before and behind the descriptions.
TEST(RunTimeErrorTest, ANumberBeyondTheDescriptionsHasTheGeneralOne) {
  for (int number = -1500; number <= 4000; ++number) {
    if (number == 1) number = 500;
    EXPECT_EQ(DescriptionOf(static_cast<ErrorNumber>(number)), kInGeneral) << number;
  }
}

}  // namespace
}  // namespace logbook
