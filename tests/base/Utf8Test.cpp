// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace logbook {
namespace {

constexpr char32_t kLast = 0x10FFFF;

std::string Utf8Of(char32_t character) {
  std::string text;
  AppendCharacter(character, text);
  return text;
}

TEST(Utf8Test, EachLengthHasItsFirstAndItsLastCharacter) {
  const std::pair<char32_t, const char*> cases[] = {{0x01, "\x01"},
                                                    {0x7F, "\x7F"},
                                                    {0x80, "\xC2\x80"},
                                                    {0x7FF, "\xDF\xBF"},
                                                    {0x800, "\xE0\xA0\x80"},
                                                    {0xD800, "\xED\xA0\x80"},
                                                    {0xFFFF, "\xEF\xBF\xBF"},
                                                    {0x10000, "\xF0\x90\x80\x80"},
                                                    {0x40000, "\xF1\x80\x80\x80"},
                                                    {0xFFFFF, "\xF3\xBF\xBF\xBF"},
                                                    {kLast, "\xF4\x8F\xBF\xBF"}};
  for (const auto& [character, bytes] : cases) EXPECT_EQ(Utf8Of(character), bytes);
  EXPECT_EQ(Utf8Of(0), std::string(1, '\0'));
}

TEST(Utf8Test, EveryCharacterComesBack) {
  for (char32_t character = 0; character <= kLast; ++character) {
    const std::string text = Utf8Of(character);
    std::size_t position = 0;
    ASSERT_EQ(NextCharacter(text, position), character);
    ASSERT_EQ(position, text.size()) << static_cast<unsigned>(character);
  }
}

TEST(Utf8Test, BytesThatBeginNoCharacterAreTakenOneByOne) {
  // Behind each of them stands what might go on.
  for (int first = 0x80; first < 0x100; ++first) {
    if (first >= 0xC2 && first < 0xF5) continue;
    for (const char* rest : {"\x80\x80\x80", "\x90\x80\x80", "\xBF\xBF\xBF"}) {
      const std::string text = static_cast<char>(first) + std::string(rest);
      std::size_t position = 0;
      EXPECT_EQ(NextCharacter(text, position), kNotUtf8) << first;
      EXPECT_EQ(position, 1u) << first;
    }
  }
}

TEST(Utf8Test, LongerFormsThanNeededAndWhatIsBeyondTheLastCharacterAreNone) {
  for (const char* text : {"\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80"}) {
    std::size_t position = 0;
    EXPECT_EQ(NextCharacter(text, position), kNotUtf8);
    EXPECT_EQ(position, 1u);
  }
}

TEST(Utf8Test, ACharacterThatIsCutShortIsNoneWhateverStandsBehindTheText) {
  for (const std::string whole : {"\xC3\xA4", "\xE6\xBC\xA2", "\xF0\x9F\x98\x80"}) {
    for (std::size_t length = 1; length < whole.size(); ++length) {
      std::size_t position = 0;
      EXPECT_EQ(NextCharacter(std::string_view(whole).substr(0, length), position), kNotUtf8);
      EXPECT_EQ(position, 1u);
      const std::string behind = "long before it: " + whole;
      const std::size_t begin = position = behind.size() - whole.size();
      EXPECT_EQ(NextCharacter(std::string_view(behind).substr(0, begin + length), position),
                kNotUtf8);
      EXPECT_EQ(position, begin + 1);
      const std::string broken = whole.substr(0, length) + "A";
      position = 0;
      EXPECT_EQ(NextCharacter(broken + "AAA", position), kNotUtf8);
    }
  }
}

TEST(Utf8Test, Utf16HasAUnitForACharacterOrAPairOfThem) {
  EXPECT_EQ(Utf16Of(""), u"");
  EXPECT_EQ(Utf16Of("a\xC3\xA4\xEF\xBF\xBF"), u"aä\xFFFF");
  EXPECT_EQ(Utf16Of(Utf8Of(0x10000) + Utf8Of(0x1F600) + Utf8Of(kLast)),
            u"\xD800\xDC00\xD83D\xDE00\xDBFF\xDFFF");
  EXPECT_EQ(Utf16Of("\xFFz"), u"\xFFFDz");
}

TEST(Utf8Test, AsciiEndsAtTheFirstOtherByte) {
  const std::string text(40, 'a');
  for (std::size_t begin = 0; begin <= text.size(); ++begin) {
    EXPECT_EQ(EndOfAscii(text, begin), text.size());
    for (std::size_t other = 0; other < text.size(); ++other) {
      std::string mixed = text;
      mixed[other] = '\x80';
      EXPECT_EQ(EndOfAscii(mixed, begin), other < begin ? mixed.size() : other);
      EXPECT_FALSE(IsAscii(mixed));
    }
  }
  EXPECT_TRUE(IsAscii(text));
  EXPECT_TRUE(IsAscii(""));
}

}  // namespace
}  // namespace logbook
