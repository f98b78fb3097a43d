// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/TextParts.h"

#include <gtest/gtest.h>

namespace logbook {
namespace {

TEST(FirstCharacters, CutsAtACharacterAndNeverInsideOne) {
  EXPECT_EQ(FirstCharacters("abc", 2), "ab");
  EXPECT_EQ(FirstCharacters("abc", 3), "abc");
  EXPECT_EQ(FirstCharacters("abc", 4), "abc");
  EXPECT_EQ(FirstCharacters("", 4), "");
  EXPECT_EQ(FirstCharacters("abc", 0), "");
  EXPECT_EQ(FirstCharacters("\xe2\x82\xac\xe2\x82\xac", 1), "\xe2\x82\xac");
}

TEST(LastDigits, PutsZerosInFrontAndDropsTheDigitsThatAreTooMany) {
  EXPECT_EQ(LastDigits(0, 2), "00");
  EXPECT_EQ(LastDigits(7, 2), "07");
  EXPECT_EQ(LastDigits(12, 2), "12");
  EXPECT_EQ(LastDigits(2026, 2), "26");
  EXPECT_EQ(LastDigits(2100, 2), "00");
  EXPECT_EQ(LastDigits(2026, 4), "2026");
}

}  // namespace
}  // namespace logbook
