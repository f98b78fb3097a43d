// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/InstrumentBuild.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace logbook::host {
namespace {

std::map<std::string, std::string> Options(const std::string& name) {
  const auto section = OptionSection(ParseBuild(name));
  return {section.begin(), section.end()};
}

TEST(InstrumentBuild, LensFamilySetsTheThreeLensOptions) {
  struct Case {
    std::string name, lens, lens2, lens3;
  };
  const std::vector<Case> cases = {{"plain", "0", "0", "0"},
                                   {"lumarin", "1", "0", "0"},
                                   {"trz-cs", "1", "1", "0"},
                                   {"trz-ce", "1", "1", "1"}};
  for (const Case& c : cases) {
    auto options = Options(c.name);
    EXPECT_EQ(options["LENS"], c.lens) << c.name;
    EXPECT_EQ(options["LENS2"], c.lens2) << c.name;
    EXPECT_EQ(options["LENS3"], c.lens3) << c.name;
  }
}

TEST(InstrumentBuild, EveryOptionSetsItsKeyAndNoOther) {
  const std::vector<std::pair<std::string, std::string>> keys = {
      {"security", "Security"}, {"styleb", "STYLEB"}, {"new_rf", "NEW_RF"},
      {"qptype", "QPTYPE"},     {"afc", "AFC"},       {"sc", "SC"},
      {"opgs", "OPGS"},         {"pmp2", "PMP2"},     {"colopgs", "COLOPGS"}};
  for (const std::string lens : {"plain", "lumarin", "trz-cs", "trz-ce"}) {
    const auto bare = Options(lens);
    for (const auto& [option, key] : keys) {
      auto expected = bare;
      expected[key] = "1";
      EXPECT_EQ(Options(lens + "+" + option), expected) << lens << "+" << option;
    }
  }
}

TEST(InstrumentBuild, OptionSectionHoldsAllTwelveKeysInTheHostsOrder) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : OptionSection(ParseBuild("plain"))) {
    keys.push_back(key);
    EXPECT_EQ(value, "0") << key;
  }
  EXPECT_EQ(keys,
            (std::vector<std::string>{"LENS", "LENS2", "LENS3", "Security", "STYLEB", "NEW_RF",
                                      "QPTYPE", "AFC", "SC", "OPGS", "PMP2", "COLOPGS"}));
}

TEST(InstrumentBuild, AnOptionCanHaveAnotherNumber) {
  EXPECT_EQ(Options("plain+qptype=2+afc=0")["QPTYPE"], "2");
  EXPECT_EQ(Options("plain+qptype=2+afc=0")["AFC"], "0");
}

TEST(InstrumentBuild, NameIsReadBackAsTheSameBuildWhateverTheCase) {
  for (const std::string name :
       {"plain", "lumarin+afc", "trz-cs+security+styleb+new_rf+qptype=2", "trz-ce+pmp2+colopgs"}) {
    EXPECT_EQ(BuildName(ParseBuild(name)), name);
  }
  EXPECT_EQ(BuildName(ParseBuild(kDemonstrationBuild)), kDemonstrationBuild);
  EXPECT_EQ(ParseBuild("TRZ-CE+StyleB"), ParseBuild("trz-ce+styleb"));
}

TEST(InstrumentBuild, UnknownNamesAreRefused) {
  for (const std::string name : {"", "trz", "plain+", "plain+turbo", "plain styleb", "+afc",
                                 "plain+qptype=", "plain+qptype=x", "plain+qptype=1x"}) {
    EXPECT_THROW(ParseBuild(name), std::invalid_argument) << name;
  }
}

}  // namespace
}  // namespace logbook::host
