// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/ZipDirectory.h"

#include <gtest/gtest.h>

namespace logbook::test {
namespace {

using namespace std::string_literals;

// A directory entry of a file "a" at this offset, with these extra fields.
std::string Entry(const std::string& offset, const std::string& extra = {},
                  const std::string& sizes = "\5\0\0\0\6\0\0\0"s) {
  return "PK\1\2\x3F\3\x14\0\0\0\x08\0\0\0\0\0CRC!"s + sizes + "\1\0"s +
         std::string(1, static_cast<char>(extra.size())) + "\0\0\0\0\0\0\0\0\0\0\0"s + offset +
         "a" + extra;
}

TEST(ZipDirectory, AnEndIsReadBackAsItWasWritten) {
  for (const ZipDirectoryPlace& place :
       {ZipDirectoryPlace{0, 0, 0}, ZipDirectoryPlace{1000, 47, 1},
        ZipDirectoryPlace{0x100000000, 47, 1}, ZipDirectoryPlace{1000, 0x100000000, 1},
        ZipDirectoryPlace{1000, 47, 65535}, ZipDirectoryPlace{0xFFFFFFFE, 0xFFFFFFFE, 65534},
        ZipDirectoryPlace{0xFFFFFFFF, 47, 1}, ZipDirectoryPlace{1000, 0xFFFFFFFF, 1}}) {
    const auto found = FindZipDirectory(std::string(100, 'x') + ZipEnd(place));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->offset, place.offset);
    EXPECT_EQ(found->size, place.size);
    EXPECT_EQ(found->count, place.count);
  }
}

TEST(ZipDirectory, WhatIsNoEndIsRefused) {
  EXPECT_FALSE(FindZipDirectory(""));
  EXPECT_FALSE(FindZipDirectory(std::string(200, 'x')));
  EXPECT_FALSE(FindZipDirectory(ZipEnd({1, 2, 3}).substr(1)));
}

TEST(ZipDirectory, OffsetsGrowByTheDistance) {
  EXPECT_EQ(MoveZipDirectory(Entry("\1\2\3\4"s) + Entry("\0\0\0\0"s), 0x10),
            Entry("\x11\2\3\4"s) + Entry("\x10\0\0\0"s));
  EXPECT_EQ(MoveZipDirectory("", 5), "");
}

TEST(ZipDirectory, AnOffsetBeyondFourGigabytesGoesIntoTheFieldForLargeNumbers) {
  const auto moved = MoveZipDirectory(Entry("\2\0\0\0"s, "UT\1\0x"s), 0x100000000);
  std::string expected = Entry("\xFF\xFF\xFF\xFF"s, "\1\0\x08\0\2\0\0\0\1\0\0\0"s + "UT\1\0x"s);
  expected[6] = 45;  // the version that knows the field
  EXPECT_EQ(moved, expected);
}

// The last number of 32 bits stands for "more", as that of sixteen bits does.
TEST(ZipDirectory, NumbersBelowTheLastOf32BitsStandInThePlainFieldsAndThoseFromItOnInLargeOnes) {
  constexpr std::size_t kPlainEnd = 22;
  EXPECT_EQ(MoveZipDirectory(Entry("\2\0\0\0"s), 0xFFFFFFFC), Entry("\xFE\xFF\xFF\xFF"s));
  EXPECT_EQ(ZipEnd({0xFFFFFFFE, 0xFFFFFFFE, 65534}).size(), kPlainEnd);
  for (const std::uint64_t offset : {0xFFFFFFFFULL, 0x100000000ULL}) {
    const std::string bytes =
        offset == 0x100000000 ? "\0\0\0\0\1\0\0\0"s : "\xFF\xFF\xFF\xFF\0\0\0\0"s;
    std::string expected = Entry("\xFF\xFF\xFF\xFF"s, "\1\0\x08\0"s + bytes);
    expected[6] = 45;
    EXPECT_EQ(MoveZipDirectory(Entry("\2\0\0\0"s), offset - 2), expected) << offset;
    EXPECT_EQ(ZipEnd({offset, 47, 1}).size(), kZipEndBytes) << offset;
    EXPECT_EQ(ZipEnd({1000, offset, 1}).size(), kZipEndBytes) << offset;
  }
  EXPECT_EQ(ZipEnd({1000, 47, 65535}).size(), kZipEndBytes);
}

TEST(ZipDirectory, ASizeThatIsTheLastOf32BitsGetsTheFieldThatItsWriterLeftOutOrEmpty) {
  const std::string last = "\xFF\xFF\xFF\xFF"s;
  for (const std::string& sizes : {"\5\0\0\0"s + last, last + last}) {
    const std::string field = last + "\0\0\0\0"s;
    const std::string data = sizes == last + last ? field + field : field;
    std::string expected =
        Entry("\3\0\0\0"s, "\1\0"s + static_cast<char>(data.size()) + "\0"s + data, sizes);
    expected[6] = 45;
    for (const std::string& left_out : {""s, "\1\0\0\0"s})
      EXPECT_EQ(MoveZipDirectory(Entry("\2\0\0\0"s, left_out, sizes), 1), expected);
  }
}

TEST(ZipDirectory, LargeSizesStayBeforeTheOffset) {
  const std::string none = "\xFF\xFF\xFF\xFF"s;
  const std::string sizes = "12345678ABCDEFGH";
  const auto moved =
      MoveZipDirectory(Entry("\2\0\0\0"s, "\1\0\x10\0"s + sizes, none + none), 0x100000000);
  std::string expected = Entry(none, "\1\0\x18\0"s + sizes + "\2\0\0\0\1\0\0\0"s, none + none);
  expected[6] = 45;
  EXPECT_EQ(moved, expected);
  // And a large offset moves on.
  EXPECT_EQ(MoveZipDirectory(expected, 1)->substr(47 + 4 + 16, 8), "\3\0\0\0\1\0\0\0"s);
}

TEST(ZipDirectory, EveryPrefixOfADirectoryIsRefused) {
  const std::string whole = Entry("\1\0\0\0"s, "UT\1\0x"s);
  for (std::size_t size = 1; size < whole.size(); ++size)
    EXPECT_FALSE(MoveZipDirectory(whole.substr(0, size), 1)) << size;
}

}  // namespace
}  // namespace logbook::test
