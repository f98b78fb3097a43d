// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SystemParameters.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

using test::TestMachine;

constexpr const char* kFile = "C:\\log\\sys.txt";

// A file of `count` fields, one to a line: row n holds n + 0.5, row 83 the stamp.
std::string Fields(int count, const std::string& stamp) {
  std::string bytes;
  for (int row = 0; row < count; ++row) {
    bytes += (row == kStampRow ? stamp : std::to_string(row) + ".5") + "\r\n";
  }
  return bytes;
}

std::vector<SystemParameter> Read(const std::string& bytes, int code_page = 1252) {
  const TestMachine disk(code_page);
  disk.Put(kFile, bytes);
  SequentialReader file(disk, kFile);
  return ReadSystemParameters(file);
}

std::string StampOf(const std::string& stamp, int code_page = 1252) {
  return std::get<std::string>(Read(Fields(245, stamp), code_page).at(kStampRow));
}

TEST(SystemParameters, EachRowIsANumberButTheStamp) {
  const std::vector<SystemParameter> fields = Read(Fields(245, "AB-12"));
  ASSERT_EQ(fields.size(), 245U);
  EXPECT_EQ(std::get<double>(fields[0]), 0.5);
  EXPECT_EQ(std::get<double>(fields[82]), 82.5);
  EXPECT_EQ(std::get<std::string>(fields[83]), "AB-12");
  EXPECT_EQ(std::get<double>(fields[84]), 84.5);
  EXPECT_EQ(std::get<double>(fields[244]), 244.5);
}

TEST(SystemParameters, TheStampMayStandBetweenDoubleQuotes) {
  EXPECT_EQ(StampOf("\"2026, No. 7\""), "2026, No. 7");
  EXPECT_EQ(StampOf("\" blanks kept \""), " blanks kept ");
  EXPECT_EQ(StampOf("\"\""), "");
}

TEST(SystemParameters, AStampWithoutQuotesKeepsTheBlanksAtItsEnd) {
  EXPECT_EQ(StampOf("  AB 12  "), "AB 12  ");
}

TEST(SystemParameters, TheStampNeedBeNoNumber) {
  EXPECT_EQ(StampOf("none"), "none");
  EXPECT_EQ(StampOf("12.50"), "12.50");
}

TEST(SystemParameters, TheStampIsInTheCodePage) {
  EXPECT_EQ(StampOf("\"\x8A\xBF\x8E\x9A\"", 932), "\xE6\xBC\xA2\xE5\xAD\x97");
}

TEST(SystemParameters, ACommaInAStampWithoutQuotesShiftsAllLaterRows) {
  const std::vector<SystemParameter> fields = Read(Fields(245, "AB,12"));
  ASSERT_EQ(fields.size(), 245U);
  EXPECT_EQ(std::get<std::string>(fields[83]), "AB");
  EXPECT_EQ(std::get<double>(fields[84]), 12);
  EXPECT_EQ(std::get<double>(fields[85]), 84.5);
  EXPECT_EQ(std::get<double>(fields[244]), 243.5);
}

TEST(SystemParameters, WhatFollowsTheLastRowIsIgnored) {
  EXPECT_EQ(Read(Fields(245, "S") + "1,2,x,1e999\r\n"), Read(Fields(245, "S")));
}

TEST(SystemParameters, AShortFileGivesTheFieldsThatItHas) {
  EXPECT_TRUE(Read("").empty());
  EXPECT_EQ(Read(Fields(83, "S")).size(), 83U);
  EXPECT_EQ(Read(Fields(84, "S")).size(), 84U);
}

TEST(SystemParameters, EveryPrefixOfAGoodFileIsRead) {
  const std::string good = Fields(245, "\"A, B\"");
  const TestMachine disk;
  std::size_t fields = 0;
  for (std::size_t length = 0; length <= good.size(); ++length) {
    disk.Put(kFile, std::string_view(good).substr(0, length));
    SequentialReader file(disk, kFile);
    const std::size_t read = ReadSystemParameters(file).size();
    EXPECT_GE(read, fields) << length;
    EXPECT_LE(read, fields + 1) << length;
    fields = read;
  }
  EXPECT_EQ(fields, 245U);
}

TEST(SystemParameters, ANumberTooLargeForADoubleIsAnOverflow) {
  EXPECT_THROW(Read("1,1e999,3"), RunTimeError);
}

TEST(Numbers, CommasAndLineEndsSeparateAlike) {
  const TestMachine disk;
  for (const char* bytes : {"1,2.5,-3e2", "1\r\n2.5\r\n-3e2\r\n", " 1 ,\t2.5\n-3e2\r"}) {
    disk.Put(kFile, bytes);
    SequentialReader file(disk, kFile);
    EXPECT_EQ(ReadNumbers(file, 3), (std::vector<double>{1, 2.5, -300})) << bytes;
  }
}

TEST(Numbers, NoMoreThanAskedForAreReadAndNoMoreThanThereAreGiven) {
  const TestMachine disk;
  disk.Put(kFile, "1,2,3");
  SequentialReader two(disk, kFile);
  EXPECT_EQ(ReadNumbers(two, 2).size(), 2U);
  EXPECT_EQ(two.ReadNumber(), 3);
  SequentialReader nine(disk, kFile);
  EXPECT_EQ(ReadNumbers(nine, 9).size(), 3U);
}

}  // namespace
}  // namespace logbook
