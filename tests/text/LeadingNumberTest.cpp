// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/LeadingNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "base/RunTimeError.h"
#include "support/GermanLocale.h"

namespace logbook {
namespace {

struct Reading {
  const char* text;
  double value;
};

TEST(LeadingNumber, TakesTheNumberThatTheTextBeginsWith) {
  const Reading readings[] = {
      {"", 0},
      {"1", 1},
      {"1.0", 1},
      {" 1", 1},
      {"   -2.5 V", -2.5},
      {"+3", 3},
      {"\t4", 4},
      {"5.", 5},
      {".5", 0.5},
      {"-.5x", -0.5},
      {"1e3", 1000},
      {"1E3", 1000},
      {"1e+3", 1000},
      {"1.5e-3", 0.0015},
      {"007", 7},
      {"12abc", 12},
      {"1.2.3", 1.2},
      {"1,5", 1},
      {"1 2", 1},
      {"0.1", 0.1},
      {"&H1F", 31},
      {"&hfF", 255},
      {" &H10", 16},
      {"&HFFFF", 65535},
      {"&H12G4", 0x12},
      {"&H9", 9},
      {"&HA", 10},
      {"&Ha", 10},
      {"&HF", 15},
      {"1H5", 1},
      {"65536", 65536},
      {"1e308", 1e308},
      {"123456789012345678", 123456789012345678.0},
  };
  for (const Reading& reading : readings) {
    EXPECT_EQ(LeadingNumber(reading.text), reading.value) << '"' << reading.text << '"';
  }
}

TEST(LeadingNumber, ReadsATextThatDoesNotBeginWithANumberAsZero) {
  for (const char* text :
       {"",     " ",    "x",   "x1",  "-",   "+",   ".",        "-.",          "e5",
        "E5",   ".e5",  "- 1", "+ 1", "--1", "&",   "&H",       "&HG",         "& H1",
        "-&H1", "&O17", "H1",  "$1",  "inf", "nan", "Infinity", "\xEF\xBC\x91"}) {
    EXPECT_EQ(LeadingNumber(text), 0) << '"' << text << '"';
  }
}

TEST(LeadingNumber, EndsBeforeAnExponentWithoutDigits) {
  for (const char* text : {"7e", "7E", "7e+", "7e-", "7ex", "7e 2", "7 e2", "7d2"}) {
    EXPECT_EQ(LeadingNumber(text), 7) << '"' << text << '"';
  }
}

TEST(LeadingNumber, BlanksInsideEndTheNumber) {
  EXPECT_EQ(LeadingNumber("1 000"), 1);
  EXPECT_EQ(LeadingNumber("1. 5"), 1);
  EXPECT_EQ(LeadingNumber("&H1 F"), 1);
}

TEST(LeadingNumber, RaisesOverflowForANumberTooLargeForADouble) {
  for (const std::string& text :
       {std::string("1e309"), std::string("-1e309"), std::string("1e999999999999999999999"),
        std::string("12e9223372036854775807"), std::string(400, '9'), std::string("0.001e400"),
        std::string("0.001e+400"), std::string("0.001E400"), std::string(400, '9') + "x-999",
        "&H" + std::string(300, 'F')}) {
    try {
      LeadingNumber(text);
      ADD_FAILURE() << text << " was read";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kOverflow) << text;
    }
  }
}

TEST(LeadingNumber, ReadsANumberTooSmallForADoubleAsZero) {
  EXPECT_EQ(LeadingNumber("1e-400"), 0);
  EXPECT_EQ(LeadingNumber("1e-999999999999999999999"), 0);
  EXPECT_EQ(LeadingNumber("1E-400"), 0);
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(LeadingNumber(std::string(500, '0') + "1e-400"), 0);
  EXPECT_EQ(LeadingNumber("0e999999999999999999999"), 0);
}

TEST(LeadingNumber, DoesNotDependOnTheLocale) {
  const test::GermanLocale locale;
  if (!locale.InForce()) GTEST_SKIP() << locale.WhyNot();
  EXPECT_EQ(LeadingNumber("1.5"), 1.5);
  EXPECT_EQ(LeadingNumber("1,5"), 1);
}

TEST(LeadingNumber, TextsThatBeginWithNoNumberAreToldApartFromZero) {
  for (const char* text : {"0", "-0", " 0 V", "0x", ".0", "1e-999", "&H0", "&h0g"}) {
    EXPECT_EQ(FindLeadingNumber(text), 0.0) << '"' << text << '"';
  }
  for (const char* text : {"", " ", "x1", "-", "+", ".", "-.", "&H", "&Hg", "&", "nan", "inf"}) {
    EXPECT_EQ(FindLeadingNumber(text), std::nullopt) << '"' << text << '"';
    EXPECT_EQ(LeadingNumber(text), 0.0) << '"' << text << '"';
  }
}

TEST(LeadingInt16, RoundsHalvesToTheNearestEvenNumber) {
  const Reading readings[] = {{"0.5", 0},   {"1.5", 2},  {"2.5", 2},   {"-0.5", 0},
                              {"-1.5", -2}, {"0.51", 1}, {"-2.5", -2}, {"1.49", 1},
                              {"x", 0},     {"", 0},     {"7", 7},     {"&H7FFF", 32767}};
  for (const Reading& reading : readings) {
    EXPECT_EQ(LeadingInt16(reading.text), reading.value) << '"' << reading.text << '"';
  }
}

TEST(LeadingInt16, RaisesOverflowOutsideSixteenBits) {
  EXPECT_EQ(LeadingInt16("32767"), 32767);
  EXPECT_EQ(LeadingInt16("32767.4"), 32767);
  EXPECT_EQ(LeadingInt16("-32768"), -32768);
  EXPECT_EQ(LeadingInt16("-32768.5"), -32768);
  for (const char* text :
       {"32768", "32767.5", "-32769", "65536", "1e10", "-1e300", "1e400", "&H8000"}) {
    try {
      LeadingInt16(text);
      ADD_FAILURE() << text << " was read";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kOverflow) << text;
    }
  }
}

// Numbers of few digits are reckoned in another way than those of many; both are the nearest
// double.
TEST(LeadingNumber, DecimalsAreTheNearestDoublesWhateverTheirLength) {
  std::mt19937_64 random(7);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    const auto digits = [&](std::size_t most) {
      for (std::size_t i = random() % (most + 1); i > 0; --i) {
        text += static_cast<char>('0' + random() % 10);
      }
    };
    digits(17);
    if (random() % 3 > 0) text += '.';
    digits(17);
    if (text.empty() || text == ".") continue;
    if (random() % 2 == 0) text += "e" + std::to_string(static_cast<int>(random() % 61) - 30);
    EXPECT_EQ(LeadingNumber(text), std::strtod(text.c_str(), nullptr)) << text;
    EXPECT_EQ(LeadingNumber("-" + text + " x"), -std::strtod(text.c_str(), nullptr)) << text;
  }
}

TEST(LeadingNumber, AnExponentIsReadWholeOrNotAtAll) {
  EXPECT_EQ(LeadingNumber("1e012"), 1e12);
  EXPECT_EQ(LeadingNumber("1e-012"), 1e-12);
  EXPECT_EQ(LeadingNumber("1e100"), 1e100);
  EXPECT_EQ(LeadingNumber("5e/9"), 5);
  EXPECT_EQ(LeadingNumber("5e"), 5);
  EXPECT_EQ(LeadingNumber("5e+"), 5);
  EXPECT_EQ(LeadingNumber("5e-x"), 5);
  EXPECT_EQ(LeadingNumber("5e5-3"), 5e5);
  EXPECT_EQ(LeadingNumber("5e22"), 5e22);
  EXPECT_EQ(LeadingNumber("5e23"), 5e23);
}

TEST(LeadingNumber, WhatStandsBehindTheTextDoesNotCount) {
  for (const std::string_view whole : {"123", "12.5", "12e3", "12E3"})
    EXPECT_EQ(LeadingNumber(whole.substr(0, 2)), 12) << whole;
  EXPECT_EQ(LeadingNumber(std::string_view("1.25").substr(0, 3)), 1.2);
}

TEST(LeadingNumber, ANumberOfManyDigitsIsTheNearestOne) {
  for (const char* text : {"1234567890.1234567890", "0.1234567890123456789", "999999999999999",
                           "9999999999999999", "123456789012345.6", "12345678901234.5"})
    EXPECT_EQ(LeadingNumber(text), std::strtod(text, nullptr)) << text;
}

}  // namespace
}  // namespace logbook
