// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Markup.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

TEST(Markup, CharactersWithAMeaningBecomeEntities) {
  EXPECT_EQ(EscapeMarkup("<a href=\"x\">&'"), "&lt;a href=&quot;x&quot;&gt;&amp;&#39;");
  EXPECT_EQ(EscapeMarkup("5 \xC2\xB5L\n\tok"), "5 \xC2\xB5L\n\tok");
}

TEST(Markup, WhatNoBrowserKnowsBecomesTheReplacementCharacter) {
  EXPECT_EQ(EscapeMarkup(std::string("a\0b\x1B", 4)),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(EscapeMarkup("\xFF\xC3"), "\xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(EscapeMarkup("\xED\xA0\x80"), "\xEF\xBF\xBD");
  EXPECT_EQ(EscapeMarkup("\xC2\x85"), "\xEF\xBF\xBD");
}

TEST(Markup, LengthsHaveTwoDecimalsAtMost) {
  EXPECT_EQ(Length(12), "12");
  EXPECT_EQ(Length(12.5), "12.5");
  EXPECT_EQ(Length(1.0 / 3), "0.33");
  EXPECT_EQ(Length(-0.001), "0");
  EXPECT_EQ(Length(100), "100");
}

}  // namespace
}  // namespace logbook::insight
