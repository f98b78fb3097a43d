// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "catalogue/OptionGating.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/TestMachine.h"
#include "text/LeadingNumber.h"

namespace logbook {
namespace {

// What an option can be in a logfile.ini; nullptr stands for a missing key.
constexpr std::array<const char*, 6> kTexts = {"0", "1", "2", nullptr, "x", " 1"};
constexpr std::array<const char*, 12> kKeys = {"LENS",   "LENS2",  "LENS3",  "Security",
                                               "STYLEB", "NEW_RF", "QPTYPE", "AFC",
                                               "SC",     "OPGS",   "PMP2",   "COLOPGS"};

using Texts = std::map<std::string, const char*>;

// What a text counts as: by hand, for the texts above.
double Counts(const char* text) {
  if (text == nullptr) return 0;
  const std::string value = text;
  if (value == "2") return 2;
  return value == "1" || value == " 1" ? 1 : 0;
}

std::string IniText(const Texts& texts) {
  std::string ini = "[LogFile]\r\nDate=11/15/2026 05:09:59\r\n[OPTION]\r\n";
  for (const auto& [key, text] : texts) {
    // Quotes keep the blank in front.
    if (text != nullptr) ini += key + "=\"" + text + "\"\r\n";
  }
  return ini;
}

// The description of a predicate, as in the service documents: a condition and the rows that it
// disables. A condition is "<option> <number>", "<option> not <number>"; "LensMode" is an option.
struct Described {
  const char* condition;
  const char* rows;
};

using Numbers = std::map<std::string, double>;

int DescribedLensMode(const Numbers& numbers) {
  if (numbers.at("LENS") == 1 && numbers.at("LENS2") == 1 && numbers.at("LENS3") == 1) return 3;
  if (numbers.at("LENS") == 1 && numbers.at("LENS2") == 1) return 2;
  if (numbers.at("LENS") == 1) return 1;
  return 0;
}

bool ConditionHolds(const std::string& condition, const Numbers& numbers) {
  std::istringstream words(condition);
  std::string option, word;
  words >> option >> word;
  const bool negated = word == "not";
  if (negated) words >> word;
  const double value = option == "LensMode" ? DescribedLensMode(numbers) : numbers.at(option);
  return (value == std::stod(word)) != negated;
}

std::set<int> RowSet(const std::string& text) {
  std::set<int> rows;
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    std::istringstream words(part);
    int first = 0, last = 0;
    std::string to;
    words >> first;
    if (!(words >> to >> last)) last = first;
    for (int row = first; row <= last; ++row) rows.insert(row);
  }
  return rows;
}

std::set<int> DescribedRows(const std::vector<Described>& rules, const Numbers& numbers) {
  std::set<int> rows;
  for (const Described& rule : rules) {
    if (ConditionHolds(rule.condition, numbers)) rows.merge(RowSet(rule.rows));
  }
  return rows;
}

const std::vector<Described> kMeter = {
    {"SC 0", "13"},      {"OPGS 0", "6, 11, 12"},    {"LENS 0", "22, 23, 24"},
    {"COLOPGS 0", "24"}, {"STYLEB 0", "25, 26, 27"}, {"STYLEB not 0", "14, 15, 17, 18, 20, 21"},
    {"AFC 1", "10"},     {"AFC not 1", "28"},
};

const std::vector<Described> kAnalog = {
    {"SC 0", "43, 44, 45"},
    {"OPGS 0", "35, 40, 41"},
    {"NEW_RF 0", "125 to 149"},
    {"NEW_RF 1", "9 to 21, 23 to 32, 95"},
    {"COLOPGS 0", "105"},
    {"LensMode not 0", "71 to 90"},
    {"LensMode not 1", "107 to 124"},
    {"LensMode not 2", "150 to 168"},
    {"LensMode not 3", "173 to 191"},
    {"STYLEB 0", "169 to 172"},
    {"STYLEB not 0", "46, 47, 49, 50, 52, 53, 58, 59"},
    {"QPTYPE 1", "63, 64"},
    {"QPTYPE not 1", "192"},
    {"AFC 1", "39, 42"},
    {"AFC not 1", "193 to 214"},
};

const std::vector<Described> kSys = {
    {"STYLEB 0", "204 to 225"},
    {"STYLEB not 0", "0 to 6, 8 to 17, 25 to 28, 106 to 109, 158, 159, 161"},
    {"QPTYPE 0", "240, 241"},
    {"QPTYPE not 0", "66, 67"},
    {"AFC 0", "242, 243"},
    {"AFC not 0", "113, 115, 117, 119, 121, 122 to 126"},
};

LogOptions OptionsOf(const Numbers& numbers) {
  LogOptions options;
  options.LENS = numbers.at("LENS");
  options.LENS2 = numbers.at("LENS2");
  options.LENS3 = numbers.at("LENS3");
  options.Security = numbers.at("Security");
  options.STYLEB = numbers.at("STYLEB");
  options.NEW_RF = numbers.at("NEW_RF");
  options.QPTYPE = numbers.at("QPTYPE");
  options.AFC = numbers.at("AFC");
  options.SC = numbers.at("SC");
  options.OPGS = numbers.at("OPGS");
  options.PMP2 = numbers.at("PMP2");
  options.COLOPGS = numbers.at("COLOPGS");
  return options;
}

Numbers AllZero() {
  Numbers numbers;
  for (const char* key : kKeys) numbers[key] = 0;
  return numbers;
}

// Calls `visit` for every way to give each of these options one of the values.
template <typename Value, typename Values>
void ForAll(const std::vector<std::string>& options, const Values& values,
            std::map<std::string, Value> chosen, const auto& visit, std::size_t at = 0) {
  if (at == options.size()) {
    visit(chosen);
    return;
  }
  for (const Value value : values) {
    chosen[options[at]] = value;
    ForAll(options, values, chosen, visit, at + 1);
  }
}

Numbers NumbersOf(const Texts& texts) {
  Numbers numbers = AllZero();
  for (const auto& [key, text] : texts) numbers[key] = Counts(text);
  return numbers;
}

std::string Show(const Numbers& numbers) {
  std::ostringstream text;
  for (const auto& [key, value] : numbers) text << key << '=' << value << ' ';
  return text.str();
}

class OptionGating : public testing::Test {
 protected:
  OptionGating() { FillCatalogues(catalogues); }

  LogOptions Read(const Texts& texts) { return ParseLogOptions(machine, IniText(texts)); }

  // Compares a predicate with its description for one log, row by row.
  void Compare(const std::vector<Described>& rules, int row_count, const Numbers& numbers,
               const std::function<bool(std::int16_t, const LogOptions&)>& is_disabled) {
    const LogOptions options = OptionsOf(numbers);
    const std::set<int> expected = DescribedRows(rules, numbers);
    for (int row = 0; row < row_count; ++row) {
      if (is_disabled(static_cast<std::int16_t>(row), options) != expected.contains(row)) {
        ADD_FAILURE() << "row " << row << " for " << Show(numbers);
      }
    }
  }

  bool Analog(int row, const LogOptions& options) {
    return IsDisabledAnalogParam(catalogues, static_cast<std::int16_t>(row), options);
  }

  test::TestMachine machine;
  Catalogues catalogues;
};

TEST_F(OptionGating, EachKeyIsReadByTheLeadingNumberRuleWithZeroAsDefault) {
  for (const char* key : kKeys) {
    for (const char* text : kTexts) {
      Numbers expected = AllZero();
      expected[key] = Counts(text);
      const LogOptions options = Read({{key, text}});
      const LogOptions wanted = OptionsOf(expected);
      for (const auto member :
           {&LogOptions::LENS, &LogOptions::LENS2, &LogOptions::LENS3, &LogOptions::Security,
            &LogOptions::STYLEB, &LogOptions::NEW_RF, &LogOptions::QPTYPE, &LogOptions::AFC,
            &LogOptions::SC, &LogOptions::OPGS, &LogOptions::PMP2, &LogOptions::COLOPGS}) {
        EXPECT_EQ(options.*member, wanted.*member) << key << "=" << (text ? text : "(missing)");
      }
    }
  }
}

TEST_F(OptionGating, OnePointZeroCountsAsOneAndATextInFrontCountsAsZero) {
  EXPECT_EQ(Read({{"AFC", "1.0"}}).AFC, 1);
  EXPECT_EQ(Read({{"AFC", "1 (yes)"}}).AFC, 1);
  EXPECT_EQ(Read({{"AFC", "0.5"}}).AFC, 0.5);
  EXPECT_EQ(Read({{"AFC", "yes 1"}}).AFC, 0);
  EXPECT_EQ(Read({{"AFC", "-1"}}).AFC, -1);
}

TEST_F(OptionGating, AnOptionTooLargeForANumberIsNeitherZeroNorOne) {
  EXPECT_TRUE(std::isinf(Read({{"AFC", "1e999"}}).AFC));
}

TEST_F(OptionGating, TuneLensGroupsFollowTheLensModeForEveryCombination) {
  int logs = 0;
  ForAll<const char*>({"LENS", "LENS2", "LENS3"}, kTexts, Texts{}, [&](const Texts& texts) {
    const LogOptions options = Read(texts);
    const int mode = DescribedLensMode(NumbersOf(texts));
    const std::map<int, int> mode_of_group = {{5, 0}, {7, 1}, {9, 2}, {11, 3}};
    for (int group = -1; group <= 20; ++group) {
      const bool disabled = mode_of_group.contains(group) && mode_of_group.at(group) != mode;
      EXPECT_EQ(IsDisabledTuneParam(static_cast<std::int16_t>(group), options.LENS, options.LENS2,
                                    options.LENS3),
                disabled)
          << "group " << group << " for " << Show(NumbersOf(texts));
    }
    ++logs;
  });
  EXPECT_EQ(logs, 216);
}

TEST_F(OptionGating, MeterRowsFollowTheirRulesForEveryCombination) {
  int logs = 0;
  ForAll<const char*>(
      {"SC", "OPGS", "LENS", "COLOPGS", "STYLEB", "AFC"}, kTexts, Texts{}, [&](const Texts& texts) {
        Compare(kMeter, 31, NumbersOf(texts), [](std::int16_t row, const LogOptions& options) {
          return IsDisabledMeterParam(row, options);
        });
        ++logs;
      });
  EXPECT_EQ(logs, 46656);
}

// The six texts count as one of three numbers, which the first test of this file shows for each
// key; with ten options that bear on a row, all combinations of the numbers are gone through.
TEST_F(OptionGating, AnalogRowsFollowTheirRulesForEveryCombination) {
  std::vector<std::pair<std::string, std::set<int>>> rules;
  for (const Described& rule : kAnalog) rules.emplace_back(rule.condition, RowSet(rule.rows));
  int logs = 0, differences = 0;
  ForAll<double>(
      {"SC", "OPGS", "NEW_RF", "COLOPGS", "LENS", "LENS2", "LENS3", "STYLEB", "QPTYPE", "AFC"},
      std::array<double, 3>{0, 1, 2}, AllZero(), [&](const Numbers& numbers) {
        std::array<bool, 251> expected{};
        for (const auto& [condition, rows] : rules) {
          if (!ConditionHolds(condition, numbers)) continue;
          for (const int row : rows) expected[static_cast<std::size_t>(row)] = true;
        }
        const LogOptions options = OptionsOf(numbers);
        for (int row = 0; row <= 250; ++row) {
          differences += Analog(row, options) != expected[static_cast<std::size_t>(row)];
        }
        ++logs;
      });
  EXPECT_EQ(logs, 59049);
  EXPECT_EQ(differences, 0);
}

TEST_F(OptionGating, SysRowsFollowTheirRulesForEveryCombination) {
  int logs = 0;
  ForAll<const char*>({"STYLEB", "QPTYPE", "AFC"}, kTexts, Texts{}, [&](const Texts& texts) {
    Compare(kSys, 245, NumbersOf(texts), [](std::int16_t row, const LogOptions& options) {
      return IsDisabledSysParam(row, options);
    });
    ++logs;
  });
  EXPECT_EQ(logs, 216);
}

TEST_F(OptionGating, OptionsBearOnTheRowsThatARuleNamesAndOnNoOther) {
  const auto named = [](const std::vector<Described>& rules) {
    std::set<int> rows;
    for (const Described& rule : rules) rows.merge(RowSet(rule.rows));
    return rows;
  };
  for (std::int16_t row = 0; row <= 30; ++row) {
    EXPECT_EQ(OptionsBearOnMeterParam(row), named(kMeter).contains(row)) << row;
  }
  for (std::int16_t row = 0; row <= 250; ++row) {
    EXPECT_EQ(OptionsBearOnAnalogParam(catalogues, row), named(kAnalog).contains(row)) << row;
  }
  const std::set<int> groups = {5, 7, 8, 9, 10, 11};
  for (std::int16_t group = 0; group <= 12; ++group) {
    EXPECT_EQ(OptionsBearOnTuneParam(group), groups.contains(group)) << group;
  }
}

TEST_F(OptionGating, ALogWithoutOptionSectionHasAllOptionsZero) {
  for (const char* descriptor : {"[LogFile]\r\nDate=11/15/2026 05:09:59\r\n", ""}) {
    const LogOptions options = ParseLogOptions(machine, descriptor);
    EXPECT_EQ(LensMode(options.LENS, options.LENS2, options.LENS3), 0);
    EXPECT_FALSE(Analog(71, options)) << "plain lens block";
    EXPECT_TRUE(Analog(107, options)) << "Lumarin lens block";
    EXPECT_TRUE(Analog(43, options)) << "SC";
    EXPECT_TRUE(Analog(35, options)) << "option gas";
    EXPECT_FALSE(Analog(9, options)) << "older plasma RF";
    EXPECT_TRUE(Analog(125, options)) << "NEW RF";
    EXPECT_TRUE(Analog(169, options)) << "Style B";
    EXPECT_TRUE(Analog(193, options)) << "AFC";
  }
}

TEST_F(OptionGating, TheSecondAndThirdLensOptionCountOnlyAfterTheOneBefore) {
  EXPECT_EQ(LensMode(0, 1, 1), 0);
  EXPECT_EQ(LensMode(1, 0, 1), 1);
  EXPECT_EQ(LensMode(1, 1, 0), 2);
  EXPECT_EQ(LensMode(1, 1, 1), 3);
  EXPECT_EQ(LensMode(2, 1, 1), 0);
  EXPECT_EQ(LensMode(1, 2, 1), 1);
  EXPECT_EQ(LensMode(1, 1, 2), 2);
}

TEST_F(OptionGating, ExactlyOneAnalogLensBlockIsEnabledForEveryLog) {
  ForAll<const char*>({"LENS", "LENS2", "LENS3"}, kTexts, Texts{}, [&](const Texts& texts) {
    const LogOptions options = OptionsOf(NumbersOf(texts));
    int enabled = 0;
    for (const auto& [first, last] : {std::pair{71, 90}, {107, 124}, {150, 168}, {173, 191}}) {
      int rows = 0;
      for (int row = first; row <= last; ++row) rows += !Analog(row, options);
      EXPECT_TRUE(rows == 0 || rows == last - first + 1);
      enabled += rows != 0;
    }
    EXPECT_EQ(enabled, 1) << Show(NumbersOf(texts));
  });
}

TEST_F(OptionGating, MeterRow24NeedsBothLensAndColopgs) {
  for (const char* lens : kTexts) {
    for (const char* colopgs : kTexts) {
      const LogOptions options = Read({{"LENS", lens}, {"COLOPGS", colopgs}});
      EXPECT_EQ(IsDisabledMeterParam(24, options), Counts(lens) == 0 || Counts(colopgs) == 0);
    }
  }
}

TEST_F(OptionGating, ALensOfTwoKeepsTheReactionCellGasesOfTheMeter) {
  const LogOptions options = Read({{"LENS", "2"}, {"COLOPGS", "1"}});
  for (const std::int16_t row : {22, 23, 24}) EXPECT_FALSE(IsDisabledMeterParam(row, options));
}

TEST_F(OptionGating, ANonNumericOptionBehavesLikeAMissingKey) {
  Texts texts, missing;
  for (const char* key : kKeys) {
    texts[key] = "x";
    missing[key] = nullptr;
  }
  const LogOptions with_text = Read(texts);
  const LogOptions without = Read(missing);
  for (std::int16_t row = 0; row < 245; ++row) {
    EXPECT_EQ(IsDisabledMeterParam(row, with_text), IsDisabledMeterParam(row, without));
    EXPECT_EQ(Analog(row, with_text), Analog(row, without));
    EXPECT_EQ(IsDisabledSysParam(row, with_text), IsDisabledSysParam(row, without));
  }
}

TEST_F(OptionGating, ANewRfOfTwoDisablesNeitherRfBlock) {
  const LogOptions options = Read({{"NEW_RF", "2"}});
  EXPECT_FALSE(Analog(9, options));
  EXPECT_FALSE(Analog(149, options));
}

TEST_F(OptionGating, AQptypeAndAnAfcOfTwoPutALogOnOppositeSides) {
  const LogOptions options = Read({{"QPTYPE", "2"}, {"AFC", "2"}});
  EXPECT_TRUE(Analog(192, options)) << "as if QPTYPE were 0";
  EXPECT_TRUE(IsDisabledSysParam(66, options)) << "as if QPTYPE were 1";
  EXPECT_TRUE(Analog(193, options)) << "as if AFC were 0";
  EXPECT_TRUE(IsDisabledSysParam(113, options)) << "as if AFC were 1";
}

TEST_F(OptionGating, Pmp2AndSecurityDecideOverNoRow) {
  for (const double value : {0.0, 1.0, 2.0}) {
    Numbers numbers = AllZero();
    for (const char* key : kKeys) numbers[key] = value;
    Numbers others = numbers;
    others["PMP2"] = others["Security"] = value == 1 ? 0 : 1;
    for (std::int16_t row = 0; row < 215; ++row) {
      EXPECT_EQ(Analog(row, OptionsOf(numbers)), Analog(row, OptionsOf(others))) << row;
      if (row >= 29) continue;
      EXPECT_EQ(IsDisabledMeterParam(row, OptionsOf(numbers)),
                IsDisabledMeterParam(row, OptionsOf(others)))
          << row;
    }
  }
}

TEST_F(OptionGating, StyleBKeepsRow7AndRows18To24OfTheSystemParameters) {
  const LogOptions options = Read({{"STYLEB", "1"}});
  EXPECT_FALSE(IsDisabledSysParam(7, options));
  for (std::int16_t row = 18; row <= 24; ++row) EXPECT_FALSE(IsDisabledSysParam(row, options));
}

TEST_F(OptionGating, APlainLensLogKeepsAllThreeBiasRowsInTheReportAndDisablesThem) {
  const LogOptions options = Read({});
  for (const std::int16_t row : {113, 157, 180}) {
    EXPECT_FALSE(IsOmittedAnalogParam(row, options));
    EXPECT_TRUE(Analog(row, options));
  }
}

TEST_F(OptionGating, ALensLogOmitsTheBiasRowsOfTheOtherFamilies) {
  ForAll<const char*>({"LENS", "LENS2", "LENS3"}, kTexts, Texts{}, [&](const Texts& texts) {
    const LogOptions options = OptionsOf(NumbersOf(texts));
    const int mode = DescribedLensMode(NumbersOf(texts));
    std::set<int> omitted;
    if (mode == 1) omitted = {157, 180};
    if (mode == 2) omitted = {113, 180};
    if (mode == 3) omitted = {113, 157};
    for (std::int16_t row = 0; row <= 250; ++row) {
      EXPECT_EQ(IsOmittedAnalogParam(row, options), omitted.contains(row)) << row;
    }
  });
}

TEST_F(OptionGating, SystemParameterRows15To17AreAlwaysOmitted) {
  for (std::int16_t row = 0; row < 245; ++row) {
    EXPECT_EQ(IsOmittedSysParam(row), row == 15 || row == 16 || row == 17);
  }
}

TEST_F(OptionGating, AnAnalogRowOutsideTheArrayRaisesSubscriptOutOfRange) {
  EXPECT_FALSE(Analog(250, {}));
  for (const int row : {-1, 251}) {
    try {
      Analog(row, {});
      ADD_FAILURE() << row;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kSubscriptOutOfRange);
    }
  }
}

}  // namespace
}  // namespace logbook
