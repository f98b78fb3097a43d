// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/PositionalNumbers.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/RunTimeError.h"
#include "snapshot/SequentialReader.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

TEST(PositionalNumbersTest, GiveTheNumbersOfTheirRows) {
  const int rows[] = {0, 2, 3, 9};
  EXPECT_EQ(NumbersAt("1,2\r\n3.5 , x\r5\n", rows), (std::vector<double>{1, 3.5, 0, 0}));
  EXPECT_EQ(NumbersAt("", rows), (std::vector<double>{0, 0, 0, 0}));
  EXPECT_EQ(NumbersAt("1e999,1e999,2", rows), (std::vector<double>{0, 2, 0, 0}));
  EXPECT_EQ(NumbersAt("1,2", {}), std::vector<double>());
}

// All numbers that one after the other reads give.
std::vector<double> ReadInTurn(const Machine& machine, const char* path) {
  SequentialReader reader(machine, path);
  std::vector<double> numbers;
  while (!reader.AtEnd()) {
    try {
      numbers.push_back(reader.ReadNumber());
    } catch (const RunTimeError&) {
      numbers.push_back(0);
    }
  }
  return numbers;
}

TEST(PositionalNumbersTest, AreThoseThatReadingInTurnGives) {
  const test::TestMachine machine;
  std::mt19937 random(5);
  const std::string pieces[] = {"1", "-2.5", "1e3", "9e999", ",", "\r\n", "\r", "\n",
                                " ", "\t",   "x",   "&H1F",  "+", ".",    ""};
  for (int round = 0; round < 500; ++round) {
    std::string bytes;
    for (int piece = 0; piece < 20; ++piece) bytes += pieces[random() % std::size(pieces)];
    machine.Put("C:\\numbers.txt", bytes);
    const std::vector<double> expected = ReadInTurn(machine, "C:\\numbers.txt");
    std::vector<int> rows;
    std::vector<double> wanted;
    for (int row = 0; row < 25; ++row) {
      if (random() % 2 == 0) continue;
      const auto index = static_cast<std::size_t>(row);
      rows.push_back(row);
      wanted.push_back(index < expected.size() ? expected[index] : 0);
    }
    ASSERT_EQ(NumbersAt(bytes, rows), wanted) << testing::PrintToString(bytes);
  }
}

}  // namespace
}  // namespace logbook
