// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CommandLine.h"

#include <gtest/gtest.h>

namespace logbook {
namespace {

TEST(CommandLineTest, TheWordsBehindTheProgramsNameAreJoinedBySingleBlanks) {
  const char* const words[] = {"logbook", "AutoRec", "", "a b", nullptr};
  EXPECT_EQ(CommandLineOf(0, words), "");
  EXPECT_EQ(CommandLineOf(1, words), "");
  EXPECT_EQ(CommandLineOf(2, words), "AutoRec");
  EXPECT_EQ(CommandLineOf(4, words), "AutoRec  a b");
}

}  // namespace
}  // namespace logbook
