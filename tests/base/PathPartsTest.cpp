// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PathParts.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace logbook {
namespace {

TEST(PathPartsTest, TheQuotesAroundAComponentAreTakenOffAndOthersStay) {
  const std::string quote(1, kQuote);
  const std::pair<std::string, std::string> cases[] = {{quote + "ab" + quote, "ab"},
                                                       {quote + "a" + quote, "a"},
                                                       {quote + quote, quote + quote},
                                                       {quote, quote},
                                                       {"", ""},
                                                       {quote + "ab", quote + "ab"},
                                                       {"ab" + quote, "ab" + quote},
                                                       {"ab", "ab"}};
  for (const auto& [given, plain] : cases) EXPECT_EQ(WithoutQuotes(given), plain);
}

}  // namespace
}  // namespace logbook
