// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/HostLinkNames.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace logbook {
namespace {

TEST(HostLinkNames, EveryByteOutsideLettersDigitsAndUnderscoreIsEscaped) {
  const std::vector<std::pair<std::string_view, std::string>> cases = {
      {"HOST", "com.norvane.Quorex.Host.HOST"},
      {"ICE1", "com.norvane.Quorex.Host.ICE1"},
      {"a_b", "com.norvane.Quorex.Host.a_b"},
      {"_", "com.norvane.Quorex.Host._"},
      {"QUOREX-2", "com.norvane.Quorex.Host.QUOREX_2d2"},
      {"a.b", "com.norvane.Quorex.Host.a_2eb"},
      {" HOST CE", "com.norvane.Quorex.Host._20HOST_20CE"},
      {"Ger\xC3\xA4t", "com.norvane.Quorex.Host.Ger_c3_a4t"},
      {std::string_view("a\0b", 3), "com.norvane.Quorex.Host.a_00b"},
  };
  for (const auto& [id, name] : cases) EXPECT_EQ(HostBusName(id), name) << id;
}

TEST(HostLinkNames, EveryLetterStandsAsItIs) {
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    EXPECT_EQ(HostBusName({&letter, 1}), std::string("com.norvane.Quorex.Host.") + letter);
    const char small = static_cast<char>(letter - 'A' + 'a');
    EXPECT_EQ(HostBusName({&small, 1}), std::string("com.norvane.Quorex.Host.") + small);
  }
}

TEST(HostLinkNames, ADigitIsEscapedInTheFirstPlaceAlone) {
  EXPECT_EQ(HostBusName("7500"), "com.norvane.Quorex.Host._37500");
  EXPECT_EQ(HostBusName("0"), "com.norvane.Quorex.Host._30");
  EXPECT_EQ(HostBusName("A0"), "com.norvane.Quorex.Host.A0");
}

TEST(HostLinkNames, TheEmptyIdStillGivesAName) {
  EXPECT_EQ(HostBusName(""), "com.norvane.Quorex.Host._");
}

}  // namespace
}  // namespace logbook
