// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/NumberFormat.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "support/GermanLocale.h"

namespace logbook {
namespace {

TEST(NumberFormat, AgreesWithEveryReferenceCase) {
  std::ifstream file(TEST_DATA_DIR "/format.json");
  const nlohmann::json cases = nlohmann::json::parse(file).at("cases");
  ASSERT_EQ(cases.size(), 387u);
  for (const nlohmann::json& entry : cases) {
    const std::string bits = entry.at("bits");
    const double value = std::bit_cast<double>(std::uint64_t{std::stoull(bits, nullptr, 16)});
    const std::string picture = entry.at("picture");
    EXPECT_EQ(FormatNumber(value, picture), entry.at("expect"))
        << entry.at("value") << " in \"" << picture << '"';
  }
}

struct Rendering {
  double value;
  const char* picture;
  const char* text;
};

void Expect(std::initializer_list<Rendering> renderings) {
  for (const Rendering& rendering : renderings) {
    EXPECT_EQ(FormatNumber(rendering.value, rendering.picture), rendering.text)
        << rendering.value << " in \"" << rendering.picture << '"';
  }
}

TEST(NumberFormat, FixedPointHasThatManyDecimalsAndADigitBeforeThePoint) {
  Expect({{0, "0", "0"},
          {0, "0.000000", "0.000000"},
          {0.25, "0.0", "0.3"},
          {12.3456, "0.000", "12.346"},
          {99.95, "0.0", "100.0"},
          {1e20, "0.0", "100000000000000000000.0"}});
}

TEST(NumberFormat, HalvesOfTheFifteenDigitNumberRoundAwayFromZero) {
  Expect({{1.005, "0.00", "1.01"},
          {-1.005, "0.00", "-1.01"},
          {2.5, "0", "3"},
          {-2.5, "0", "-3"},
          {0.5, "0", "1"},
          {0.49999999999999994, "0", "1"},
          {0.4999999999999, "0", "0"}});
}

TEST(NumberFormat, ANegativeNumberThatRoundsToZeroKeepsItsSign) {
  Expect({{-0.001, "0.00", "-0.00"}, {-0.4, "0", "-0"}, {-0.0, "0.00", "0.00"}, {-0.0, "0", "0"}});
}

TEST(NumberFormat, ScientificHasOneDigitBeforeThePointAndABareExponent) {
  Expect({{1.7, "0.00e-#", "1.70e0"},
          {12345, "0.000e-#", "1.235e4"},
          {9.9996e-4, "0.000e-#", "1.000e-3"},
          {-5e-7, "0.0e-#", "-5.0e-7"},
          {6.02214076e23, "0.0000000e-#", "6.0221408e23"},
          {1e-300, "0.0e-#", "1.0e-300"}});
}

TEST(NumberFormat, ZeroInAScientificPictureHasTheExponentZero) {
  Expect({{0, "0.00e-#", "0.00e0"}, {-0.0, "0.0e-#", "0.0e0"}, {0, "0.0000000e-#", "0.0000000e0"}});
}

TEST(NumberFormat, APictureThatEndsInTheMinusPrintsAsTheOneWithADigitPlaceholder) {
  for (const double value : {0.0, 1.0, -1.0, 0.000123456, 123456.0, 1e300, 9.9996e-4, -2.5e-9}) {
    EXPECT_EQ(FormatNumber(value, "0.000e-"), FormatNumber(value, "0.000e-#"));
  }
  Expect({{0, "0.000e-", "0.000e0"}, {0.000123456, "0.000e-", "1.235e-4"}});
}

TEST(NumberFormat, APictureWithoutAPlaceholderPrintsItself) {
  Expect({{1234.5, "1", "1"}, {-1, "1", "1"}, {0, "1", "1"}, {3, "", ""}});
}

TEST(NumberFormat, TheLargestAndSmallestNumbersAreRendered) {
  constexpr double kMax = std::numeric_limits<double>::max();
  constexpr double kTiny = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(FormatNumber(kMax, "0").size(), 309u);
  Expect({{kMax, "0.00e-#", "1.80e308"}, {kTiny, "0.00e-#", "4.94e-324"}, {kTiny, "0.0", "0.0"}});
}

// Numbers whose shortest form has 15 digits or fewer, and their neighbours, whose has more.
TEST(NumberFormat, ANumberAndItsNeighboursAgreeInFifteenDigits) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 20000; ++round) {
    const std::string digits = std::to_string(100'000'000'000'000 + random() % 900'000'000'000'000);
    const std::string exponent = std::to_string(static_cast<int>(random() % 400) - 200);
    const std::string text = digits.substr(0, 1) + "." + digits.substr(1) + "e" + exponent;
    const double value = std::stod(text);
    for (const double near : {value, std::nextafter(value, 0.0), std::nextafter(value, 1e300)}) {
      ASSERT_EQ(FormatNumber(near, "0.00000000000000e-#"), text);
    }
  }
}

TEST(NumberFormat, OfMoreThanFifteenDigitsTheRestIsZero) {
  Expect({{1234567890.123456, "0.000000", "1234567890.123460"},
          {123456789.123456, "0.000000", "123456789.123456"},
          {999999999.999999, "0.000000", "999999999.999999"},
          {9999999999.999999, "0.000000", "10000000000.000000"}});
}

// The first fifteen digits of a number and its exponent, as the C library has them.
std::string FifteenDigits(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.14e", value);
  const std::string whole = text;
  const std::size_t letter = whole.find('e');
  return whole.substr(0, letter) + "e" + std::to_string(std::stoi(whole.substr(letter + 1)));
}

TEST(NumberFormat, NumbersOfFewDigitsAndTheirNeighboursHaveTheDigitsOfAnyOther) {
  constexpr const char* kPicture = "0.00000000000000e-#";
  for (const double digits : {1.0, 7.0, 10.0, 999.0, 12345.0, 1234567.0, 99999999999.0,
                              123456789012345.0, 999999999999999.0, 1e15, 4503599627370497.0}) {
    for (const double divisor : {1.0, 10.0, 1e3, 1e5, 1e6, 1e7, 1e9, 3.0}) {
      const double number = digits / divisor;
      for (const double value : {number, std::nextafter(number, 0), std::nextafter(number, 1e300)})
        EXPECT_EQ(FormatNumber(value, kPicture), FifteenDigits(value)) << digits << "/" << divisor;
    }
  }
}

TEST(NumberFormat, DoesNotDependOnTheLocale) {
  const test::GermanLocale locale;
  if (!locale.InForce()) GTEST_SKIP() << locale.WhyNot();
  Expect({{1.5, "0.00", "1.50"}, {1.5, "0.00e-#", "1.50e0"}});
}

}  // namespace
}  // namespace logbook
