// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Tune.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace logbook::host {
namespace {

using MacroFunction = std::string (*)(const Instrument&, int);

Instrument Make(const std::string& build) {
  return {ParseBuild(build), 1};
}

std::string UpperCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// The rule of a reader of these files: the last line that holds the name anywhere and a "=".
std::string LastLineWith(const std::string& file, const std::string& name) {
  std::string found;
  std::size_t start = 0;
  for (std::size_t end; (end = file.find("\r\n", start)) != std::string::npos; start = end + 2) {
    const std::string line = file.substr(start, end - start);
    if (UpperCase(line).find(UpperCase(name)) != std::string::npos &&
        line.find('=') != std::string::npos) {
      found = line;
    }
  }
  return found;
}

double ValueOf(const std::string& file, const std::string& name) {
  const std::string line = LastLineWith(file, name);
  return std::strtod(line.substr(line.find('=') + 1).c_str(), nullptr);
}

std::vector<std::string> Elements(const std::vector<std::string>& arrays, int size) {
  std::vector<std::string> names;
  for (const std::string& array : arrays) {
    for (int i = 1; i <= size; ++i) names.push_back(array + "[" + std::to_string(i) + "]");
  }
  return names;
}

std::vector<std::pair<MacroFunction, std::vector<std::string>>> AllVariables() {
  auto sense = Elements({"SenseMass", "SenseRatioMass", "SenseMean", "SenseRsd"}, 15);
  sense.insert(sense.end(), {"SENSEINTEG", "SENSEPERIOD"});
  auto other = Elements({"BackMass", "BackMean"}, 15);
  other.insert(other.end(), {"DblRatioMass$", "DblRatioCount", "OxideRatioMass$", "OxideRatioCount",
                             "OPT_COLOPGS"});
  auto reso = Elements({"ResoMass", "ResoAxis", "ResoW50", "ResoW10"}, 3);
  reso.insert(reso.end(), {"RESOINTEG", "RESOACQTIME"});
  const std::vector<std::string> param = {
      "XPOS",        "YPOS", "ZPOS", "CRGS", "MUGS", "OPGS", "EXT1",
      "EXT2",        "EIN1", "EIN2", "VRNB", "VRNP", "VRNN", "QPFO",
      "PLBI",        "POBI", "DSCR", "ANHV", "PLHV", "OEXT", "OIN1",
      "OIN2",        "OCEN", "OCEX", "OPLB", "LPRF", "LPBS", "CLH2",
      "CLHE",        "CLOP", "PEX1", "PEX2", "PVRB", "PVRG", "PCEN",
      "PQPF",        "PCEX", "GEX1", "GEX2", "GOSB", "GOST", "GCEN",
      "GQPF",        "GCEX", "AMGA", "AMOF", "AXGA", "AXOF", "InstrumentName$",
      "OPT_COLOPGS", "CLMD"};
  return {{SenseMacro, sense}, {OtherMacro, other}, {ResoMacro, reso}, {ParamMacro, param}};
}

TEST(Tune, EveryVariableIsFoundOnALineOfItsOwnBySubstring) {
  for (const std::string build : {"plain", "lumarin", "trz-cs+colopgs", "trz-ce+opgs+colopgs"}) {
    for (const auto& [macro, names] : AllVariables()) {
      const std::string file = macro(Make(build), 4);
      for (const std::string& name : names) {
        const std::string line = LastLineWith(file, name);
        EXPECT_EQ(line.rfind(name + "=", 0), 0u) << build << ": " << name << " reads " << line;
      }
    }
  }
}

TEST(Tune, TextVariablesStandBetweenQuotes) {
  const Instrument instrument = Make("trz-ce");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {OtherMacro(instrument, 1), "DblRatioMass$"},
      {OtherMacro(instrument, 1), "OxideRatioMass$"},
      {ParamMacro(instrument, 1), "InstrumentName$"}};
  for (const auto& [file, name] : cases) {
    const std::string value = LastLineWith(file, name).substr(name.size() + 1);
    ASSERT_GT(value.size(), 2u) << name;
    EXPECT_EQ(value.front(), '"') << name;
    EXPECT_EQ(value.find('"', 1), value.size() - 1) << name;
  }
}

TEST(Tune, SlotsThatAreNotInUseHoldMinusOne) {
  const std::string file = SenseMacro(Make("plain"), 0);
  EXPECT_EQ(ValueOf(file, "SenseMass[1]"), 7);
  EXPECT_GT(ValueOf(file, "SenseMean[1]"), 1000);
  for (const std::string name : {"SenseMass[15]", "SenseMean[15]", "SenseRsd[15]"}) {
    EXPECT_EQ(ValueOf(file, name), -1) << name;
  }
  EXPECT_EQ(ValueOf(OtherMacro(Make("plain"), 0), "BackMass[15]"), -1);
}

TEST(Tune, SwitchesFollowTheBuild) {
  for (const std::string build : {"plain", "plain+colopgs", "lumarin", "trz-ce+colopgs"}) {
    const std::string param = ParamMacro(Make(build), 0), other = OtherMacro(Make(build), 0);
    const bool cell = build.rfind("plain", 0) != 0;
    const bool gas = cell && build.find("colopgs") != std::string::npos;
    EXPECT_EQ(ValueOf(param, "CLMD"), cell) << build;
    EXPECT_EQ(ValueOf(param, "OPT_COLOPGS"), gas) << build;
    EXPECT_EQ(ValueOf(other, "OPT_COLOPGS"), gas) << build;
    EXPECT_EQ(ValueOf(param, "CLOP") != 0, gas) << build;
  }
}

TEST(Tune, OptionalGasReadsItsOwnValueAndNotTheSwitchs) {
  EXPECT_EQ(ValueOf(ParamMacro(Make("trz-ce+colopgs"), 0), "OPGS"), 0);
  EXPECT_NEAR(ValueOf(ParamMacro(Make("plain+opgs"), 0), "OPGS"), 10, 1);
}

TEST(Tune, LensesOfOtherFamiliesAreZero) {
  const std::vector<std::pair<std::string, std::string>> own = {
      {"plain", "EXT2"}, {"lumarin", "OIN1"}, {"trz-cs", "PEX2"}, {"trz-ce", "GEX2"}};
  for (const auto& [build, variable] : own) {
    for (const auto& [other_build, other_variable] : own) {
      const double value = ValueOf(ParamMacro(Make(build), 0), other_variable);
      EXPECT_EQ(value != 0, build == other_build) << build << " " << other_variable;
    }
  }
}

TEST(Tune, SensitivityFallsAndOxideRisesUntilTheConesAreChanged) {
  const Instrument instrument = Make("plain");
  const auto mean = [&](int log) { return ValueOf(SenseMacro(instrument, log), "SenseMean[2]"); };
  const auto oxide = [&](int log) {
    return ValueOf(OtherMacro(instrument, log), "OxideRatioCount");
  };
  for (const int fresh : {0, 12, 24}) {
    EXPECT_LT(mean(fresh + 11), mean(fresh) - 2500) << fresh;
    EXPECT_GT(oxide(fresh + 11), oxide(fresh) + 0.3) << fresh;
  }
}

TEST(Tune, DetectorVoltageAgreesWithTheAnalogReading) {
  const Instrument instrument = Make("plain");
  for (const int log : {0, 33, 90}) {
    EXPECT_NEAR(ValueOf(ParamMacro(instrument, log), "ANHV"),
                std::strtod(AnalogFields(instrument, log)[91].c_str(), nullptr), 8);
  }
}

TEST(Tune, ReportNamesInstrumentTimeAndMasses) {
  const Instrument instrument = Make("trz-ce");
  const std::string report = TuneReport(instrument, 2, *ParseTime("2026-11-15T05:09:59"));
  for (const std::string& text : {InstrumentName(instrument), std::string("2026/11/15 05:09:59"),
                                  std::string("205"), std::string("GEX1"), std::string("70/140")}) {
    EXPECT_NE(report.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(report.find("EXT1"), std::string::npos) << "no plain lens";
}

}  // namespace
}  // namespace logbook::host
