// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/BitWords.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "base/RunTimeError.h"
#include "catalogue/ItemRecord.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

using test::TestMachine;

constexpr const char* kFile = "C:\\log\\bout.txt";
const std::string kSixteen = "1,2,3,4,5,6,7,8,9,A,B,C,D,E,F,10\r\n";

BitWords Read(const std::string& bytes, int code_page = 1252) {
  const TestMachine disk(code_page);
  disk.Put(kFile, bytes);
  SequentialReader file(disk, kFile);
  return ReadBitWords(file);
}

TEST(BitWords, OnlyTheLastFourCharactersOfAFieldCount) {
  const std::pair<const char*, int> cases[] = {{"1234", 0x1234},
                                               {"00001234", 0x1234},
                                               {"F1234", 0x1234},
                                               {"&H1234", 0x1234},
                                               {"0x00FF", 0x00FF},
                                               {"zz\xE6\xBC\xA2"
                                                "00ff",
                                                0x00FF},
                                               {"FFFF", 0xFFFF},
                                               {"word 8000", 0x8000}};
  for (const auto& [field, word] : cases) EXPECT_EQ(BitWord(field), word) << field;
}

TEST(BitWords, AShortFieldIsTakenWhole) {
  EXPECT_EQ(BitWord("1"), 0x1);
  EXPECT_EQ(BitWord("fF"), 0xFF);
  EXPECT_EQ(BitWord("123"), 0x123);
  EXPECT_EQ(BitWord(""), 0);
}

TEST(BitWords, DigitsEndAtTheFirstOtherCharacter) {
  const std::pair<const char*, int> cases[] = {{"12G4", 0x12},
                                               {"G234", 0},
                                               {"12 4", 0x12},
                                               {"001F ", 0x01F},
                                               {"12.4", 0x12},
                                               {"-123", 0},
                                               {" 123", 0},
                                               {"12\xC3\xBC"
                                                "4",
                                                0x12}};
  for (const auto& [field, word] : cases) EXPECT_EQ(BitWord(field), word) << field;
}

TEST(BitWords, ADoubleByteCharacterIsOneOfTheFour) {
  EXPECT_EQ(BitWord("FF\xE6\xBC\xA2"
                    "1"),
            0xFF);  // the last four are "FF", the character and "1"
}

TEST(BitWords, TheWordFFFFHasEveryBitSet) {
  const std::uint16_t word = BitWord("FFFF");
  for (int bit = 0; bit < 16; ++bit) {
    EXPECT_TRUE(BitIsSet(word, static_cast<std::uint16_t>(1U << bit))) << bit;
  }
}

TEST(BitWords, TheHighestBitIsSetInANegativeWord) {
  const auto word = static_cast<std::int16_t>(BitWord("8000"));
  EXPECT_LT(word, 0);
  EXPECT_TRUE(BitIsSet(static_cast<std::uint16_t>(word), 32768));
  EXPECT_FALSE(BitIsSet(BitWord("7FFF"), 32768));
}

TEST(BitWords, FieldsMayStandInOneLineOrOneToALineOrInQuotes) {
  const BitWords words = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  EXPECT_EQ(Read(kSixteen), words);
  EXPECT_EQ(Read("1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\nA\r\nB\r\nC\r\nD\r\nE\r\nF\r\n10"),
            words);
  EXPECT_EQ(Read("\"a,b 0001\",2,3,4,5,6,7,8,9,A,B,C,D,E,F,\"0010\""), words);
}

TEST(BitWords, WhatFollowsTheSixteenthFieldIsIgnored) {
  EXPECT_EQ(Read(kSixteen + "FFFF,zz,\"\r\n"), Read(kSixteen));
}

TEST(BitWords, TheWordStandsAtTheEndOfAFieldOfAnyLength) {
  EXPECT_EQ(Read(std::string(200'000, 'F') + " 12AB" + kSixteen.substr(1))[0], 0x12AB);
  EXPECT_EQ(Read("\"" + std::string(200'000, ',') + "00FF\"" + kSixteen.substr(1))[0], 0xFF);
}

TEST(BitWords, FewerThanSixteenFieldsAreAnErrorPastTheEnd) {
  for (const char* bytes :
       {"", "1,2,3", "1,2,3,4,5,6,7,8,9,A,B,C,D,E,F", "1,2,3,4,5,6,7,8,9,A,B,C,D,E,F,"}) {
    try {
      Read(bytes);
      ADD_FAILURE() << bytes;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kInputPastEndOfFile) << bytes;
    }
  }
}

TEST(BitWords, EveryPrefixOfAGoodFileIsReadOrRefused) {
  for (int code_page : {1252, 932}) {
    for (std::size_t length = 0; length <= kSixteen.size(); ++length) {
      const std::string prefix = kSixteen.substr(0, length);
      const bool whole = length > kSixteen.find_last_of(',') + 1;
      bool read = false;
      try {
        Read(prefix, code_page);
        read = true;
      } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::kInputPastEndOfFile) << prefix;
      }
      EXPECT_EQ(read, whole) << prefix;
    }
  }
}

}  // namespace
}  // namespace logbook
