// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ValueColumn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace logbook::insight {
namespace {

// Bit for bit: a negative zero is not a zero.
void ExpectSame(const ValueColumn& column) {
  const std::optional<ValueColumn> back = UnpackColumn(PackColumn(column));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->States, column.States);
  ASSERT_EQ(back->Numbers.size(), column.Numbers.size());
  for (std::size_t i = 0; i < column.Numbers.size(); ++i) {
    EXPECT_EQ(back->Numbers[i], column.Numbers[i]);
    EXPECT_EQ(std::signbit(back->Numbers[i]), std::signbit(column.Numbers[i]));
  }
}

ValueColumn ColumnOf(const std::vector<double>& numbers) {
  ValueColumn column;
  for (const double number : numbers) column.Add(0, number);
  return column;
}

TEST(ValueColumn, NumbersComeBackBitForBit) {
  using Limits = std::numeric_limits<double>;
  ExpectSame({});
  ExpectSame(ColumnOf({0.1}));
  ExpectSame(ColumnOf({0.1, 0.25, 1700, -3.4, 0}));
  ExpectSame(ColumnOf({-0.0, 0.0, 1}));
  ExpectSame(ColumnOf({1.0 / 3, 2}));
  ExpectSame(ColumnOf({1e300, -1e-300, Limits::denorm_min(), Limits::max()}));
  ExpectSame(ColumnOf({Limits::infinity(), 1}));
  ExpectSame(ColumnOf({9007199254740993.0, 1}));
  ExpectSame(ColumnOf({-9e15, 9e15}));
  std::mt19937_64 random(1);
  for (int round = 0; round < 300; ++round) {
    ValueColumn column;
    const int places = static_cast<int>(random() % 12);
    const auto spread = static_cast<std::int64_t>(1ULL << (random() % 50));
    for (int i = 0; i < kBlockLogs; ++i) {
      const auto whole = static_cast<std::int64_t>(random()) % spread;
      column.Add(static_cast<std::uint8_t>(random() % 5),
                 static_cast<double>(whole) / std::pow(10.0, places));
    }
    ExpectSame(column);
  }
}

TEST(ValueColumn, ReadingsOfFewDigitsTakeFewBytes) {
  ValueColumn column;
  for (int i = 0; i < kBlockLogs; ++i) column.Add(0, (17000 + i * 7 % 251) / 10.0);
  EXPECT_LT(PackColumn(column).size(), 300U);
  EXPECT_LT(PackColumn(ColumnOf(std::vector<double>(kBlockLogs, 3.5))).size(), 32U);
}

TEST(ValueColumn, EveryDamagedByteIsNoticed) {
  const std::string good = PackColumn(ColumnOf({0.1, 0.25, 1700, -3.4, 0}));
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::string bad = good;
    bad[i] ^= 0x10;
    EXPECT_FALSE(UnpackColumn(bad)) << i;
    EXPECT_FALSE(UnpackColumn(good.substr(0, i))) << i;
  }
  EXPECT_FALSE(UnpackColumn(good + "x"));
}

TEST(ValueColumn, AFormThatDoesNotExistIsDamageUnderARightChecksumToo) {
  // Checksum, two values, one state of 1, form 3 of the numbers.
  const std::string bytes = {2, 0, 0, 1, 3};
  const std::uint32_t sum = ChecksumOf(bytes);
  std::string whole;
  for (int i = 0; i < 4; ++i) whole += static_cast<char>(sum >> (8 * i) & 0xFF);
  EXPECT_FALSE(UnpackColumn(whole + bytes));
}

TEST(ValueColumn, WhatIsNoNumberIsDamageUnderARightChecksumToo) {
  EXPECT_TRUE(UnpackColumn(PackColumn(ColumnOf({1, 1e300 * 1e300}))));
  EXPECT_FALSE(UnpackColumn(PackColumn(ColumnOf({1, std::nan("")}))));
}

}  // namespace
}  // namespace logbook::insight
