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

TEST(CommandLineTest, TheWordsAreThoseOfMainWithANullBehindThem) {
  const char* const given[] = {"logbookctl", "find", "", "M\xC3\xBCller", nullptr};
  const CommandWords words(4, given);
  ASSERT_EQ(words.Count(), 4);
  for (int i = 0; i < 4; ++i) EXPECT_STREQ(words.Words()[i], given[i]);
  EXPECT_EQ(words.Words()[4], nullptr);
}

}  // namespace
}  // namespace logbook
