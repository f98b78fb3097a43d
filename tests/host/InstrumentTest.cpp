// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Instrument.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>
#include <vector>

namespace logbook::host {
namespace {

constexpr std::size_t kStamp = 83;

Instrument Make(const std::string& build, std::uint64_t seed = 1) {
  return {ParseBuild(build), seed};
}

std::vector<std::string> AllBuilds() {
  std::vector<std::string> builds;
  for (const std::string lens : {"plain", "lumarin", "trz-cs", "trz-ce"}) {
    for (const std::string options :
         {"", "+styleb", "+new_rf", "+afc", "+qptype", "+sc", "+opgs", "+colopgs",
          "+security+styleb+new_rf+qptype+afc+sc+opgs+pmp2+colopgs"}) {
      builds.push_back(lens + options);
    }
  }
  return builds;
}

bool IsNumber(const std::string& text) {
  char* end = nullptr;
  std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0';
}

double At(const std::vector<std::string>& fields, std::size_t row) {
  return std::strtod(fields.at(row).c_str(), nullptr);
}

TEST(Instrument, EveryBuildGivesEveryFileItsNumberOfFields) {
  for (const std::string& build : AllBuilds()) {
    const Instrument instrument = Make(build);
    EXPECT_EQ(MeterFields(instrument, 3).size(), 29u) << build;
    EXPECT_EQ(AnalogFields(instrument, 3).size(), 215u) << build;
    EXPECT_EQ(SystemFields(instrument).size(), 245u) << build;
  }
}

TEST(Instrument, EveryFieldIsANumberButTheQuotedStamp) {
  for (const std::string& build : AllBuilds()) {
    const Instrument instrument = Make(build);
    for (const auto& fields : {MeterFields(instrument, 5), AnalogFields(instrument, 5)}) {
      for (const std::string& field : fields) EXPECT_TRUE(IsNumber(field)) << build << field;
    }
    const auto parameters = SystemFields(instrument);
    for (std::size_t row = 0; row < parameters.size(); ++row) {
      EXPECT_TRUE(row == kStamp || IsNumber(parameters[row])) << build << row;
    }
    EXPECT_EQ(parameters[kStamp].front(), '"');
    EXPECT_EQ(parameters[kStamp].back(), '"');
    EXPECT_NE(parameters[kStamp].find(','), std::string::npos) << "the quotes have work to do";
  }
}

TEST(Instrument, ReadingsOfLackingHardwareAreZeroAndOthersAreNot) {
  const auto fitted = [](const std::string& build, std::size_t row) {
    return At(AnalogFields(Make(build), 4), row) != 0.0;
  };
  struct Case {
    std::size_t row;
    std::string with, without;
  };
  const std::vector<Case> cases = {
      {72, "plain", "lumarin"},
      {108, "lumarin", "trz-cs"},
      {152, "trz-cs", "trz-ce"},
      {175, "trz-ce", "trz-cs"},
      {98, "trz-cs", "plain"},
      {43, "plain+sc", "plain"},
      {35, "plain+opgs", "plain"},
      {105, "lumarin+colopgs", "lumarin"},
      {105, "trz-ce+colopgs", "plain+colopgs"},
      {129, "plain+new_rf", "plain"},
      {13, "plain", "plain+new_rf"},
      {169, "plain+styleb", "plain"},
      {46, "plain", "plain+styleb"},
      {192, "plain+qptype", "plain"},
      {63, "plain", "plain+qptype"},
      {197, "plain+afc", "plain"},
      {39, "plain", "plain+afc"},
  };
  for (const Case& c : cases) {
    EXPECT_TRUE(fitted(c.with, c.row)) << c.with << " row " << c.row;
    EXPECT_FALSE(fitted(c.without, c.row)) << c.without << " row " << c.row;
  }
}

TEST(Instrument, MeterAndAnalogReadingsOfOneGaugeAgree) {
  const Instrument instrument = Make("plain");
  for (int log : {0, 7, 23}) {
    const auto meters = MeterFields(instrument, log), analogs = AnalogFields(instrument, log);
    EXPECT_NEAR(At(meters, 2), At(analogs, 13), 5) << "forward power";
    EXPECT_NEAR(At(meters, 4), At(analogs, 33), 0.01) << "carrier gas";
    EXPECT_NEAR(At(meters, 16), At(analogs, 48), 1e-5) << "analyzer pressure";
    EXPECT_NEAR(At(meters, 19), At(analogs, 57), 1) << "water temperature";
  }
}

TEST(Instrument, DetectorVoltageRisesUntilTheMultiplierIsChanged) {
  const Instrument instrument = Make("trz-ce");
  constexpr std::size_t kAnalogHv = 91;
  double before = At(AnalogFields(instrument, 0), kAnalogHv);
  for (int log = 10; log < 120; log += 10) {
    const double now = At(AnalogFields(instrument, log), kAnalogHv);
    EXPECT_GT(now, before + 20) << log;
    before = now;
  }
  EXPECT_LT(At(AnalogFields(instrument, 120), kAnalogHv), before - 400);
}

TEST(Instrument, BackingPressureRisesWithTheOilsAge) {
  const Instrument instrument = Make("plain");
  constexpr std::size_t kBackingPress = 14;
  EXPECT_GT(At(MeterFields(instrument, 25), kBackingPress),
            At(MeterFields(instrument, 0), kBackingPress) + 0.5);
  EXPECT_LT(At(MeterFields(instrument, 26), kBackingPress),
            At(MeterFields(instrument, 25), kBackingPress) - 0.5);
}

TEST(Instrument, SameSeedGivesTheSameValuesAndAnotherSeedAnotherInstrument) {
  EXPECT_EQ(AnalogFields(Make("plain", 7), 3), AnalogFields(Make("plain", 7), 3));
  EXPECT_NE(AnalogFields(Make("plain", 7), 3), AnalogFields(Make("plain", 8), 3));
  EXPECT_NE(AnalogFields(Make("plain", 7), 3), AnalogFields(Make("plain", 7), 4));
  EXPECT_NE(SystemFields(Make("plain", 7)), SystemFields(Make("plain", 8)));
  EXPECT_NE(InstrumentName(Make("plain", 7)), InstrumentName(Make("plain", 8)));
}

TEST(Instrument, PlasmaAndPumpsAreOnInTheBits) {
  for (const std::string& build : AllBuilds()) {
    const Instrument instrument = Make(build);
    EXPECT_TRUE(InputWords(instrument, 2)[5] & 8192) << build << " plasma";
    EXPECT_TRUE(OutputWords(instrument, 2)[6] & 2048) << build << " turbo pump";
    EXPECT_TRUE(OutputWords(instrument, 2)[9] & 4096) << build << " RF";
    EXPECT_EQ(InputWords(instrument, 2)[15], 0) << "no signal has word 15";
  }
  EXPECT_TRUE(OutputWords(Make("plain"), 2)[6] & 32768);
  EXPECT_FALSE(OutputWords(Make("plain+styleb"), 2)[6] & 32768);
}

TEST(Instrument, BitsDifferFromLogToLogNowAndThen) {
  std::set<std::array<std::uint16_t, kBitWords>> seen;
  for (int log = 0; log < 30; ++log) seen.insert(InputWords(Make("trz-ce+new_rf"), log));
  EXPECT_GT(seen.size(), 2u);
  EXPECT_LT(seen.size(), 25u);
}

TEST(FixedText, HasAPointAndNoSignOnNothing) {
  EXPECT_EQ(FixedText(-0.001, 2), "0.00");
  EXPECT_EQ(FixedText(-0.0, 0), "0");
  EXPECT_EQ(FixedText(-1.25, 1), "-1.2");
  EXPECT_EQ(FixedText(12345678, 1), "12345678.0");
}

}  // namespace
}  // namespace logbook::host
