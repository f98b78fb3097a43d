// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CodePage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "Vectors.h"
#include "base/Utf8.h"

namespace logbook::test {
namespace {

constexpr int kPages[] = {932, 936, 949, 950, 1250, 1251, 1252};

std::string TextOfUnits(const std::string& utf16le) {
  std::string text;
  for (std::size_t i = 0; i + 1 < utf16le.size(); i += 2) {
    const auto unit_at = [&utf16le](std::size_t at) -> char32_t {
      return static_cast<unsigned char>(utf16le[at]) |
             static_cast<char32_t>(static_cast<unsigned char>(utf16le[at + 1])) << 8;
    };
    char32_t character = unit_at(i);
    if (character >= 0xD800 && character < 0xDC00 && i + 3 < utf16le.size()) {
      character = 0x10000 + ((character - 0xD800) << 10) + (unit_at(i + 2) - 0xDC00);
      i += 2;
    }
    AppendCharacter(character, text);
  }
  return text;
}

char32_t CharacterNamed(const std::string& name) {
  return static_cast<char32_t>(std::stoul(name.substr(2), nullptr, 16));
}

std::string TextOfCharacter(char32_t character) {
  std::string text;
  AppendCharacter(character, text);
  return text;
}

TEST(CodePageTest, EveryRecordedTextHasItsBytesAndItsLength) {
  int count = 0;
  for (const auto& each : ReadCases("codepage.json")) {
    const CodePage* page = CodePage::Find(each.at("code_page"));
    ASSERT_NE(page, nullptr) << each;
    std::string text;
    if (each.contains("chars")) {
      for (const auto& name : each.at("chars")) text += TextOfCharacter(CharacterNamed(name));
    } else {
      text = TextOfUnits(FromHex(each.at("utf16le")));
    }
    const std::string expected = each.at("bytes");
    EXPECT_EQ(ToHex(page->FromUtf8(text)), expected) << each;
    EXPECT_EQ(page->Length(text), expected.size() / 2) << each;
    ++count;
  }
  EXPECT_EQ(count, 1103);
}

TEST(CodePageTest, EverySimilarCharacterIsWrittenForTheMissingOne) {
  std::ifstream in(BEST_FIT_FILE);
  int count = 0;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    int number = 0;
    std::string name, bytes;
    words >> number >> name >> bytes;
    const CodePage* page = CodePage::Find(number);
    ASSERT_NE(page, nullptr) << line;
    EXPECT_EQ(ToHex(page->FromUtf8(TextOfCharacter(CharacterNamed(name)))), bytes) << line;
    ++count;
  }
  EXPECT_EQ(count, 2628);
}

TEST(CodePageTest, PagesOfOtherNumbersAreUnknown) {
  for (const int number : {0, 1, 437, 850, 1253, 65001, -1252}) {
    EXPECT_EQ(CodePage::Find(number), nullptr) << number;
  }
  for (const int number : kPages) EXPECT_EQ(CodePage::Find(number)->Number(), number);
}

TEST(CodePageTest, AsciiIsTheSameInAllPagesNulAndControlsIncluded) {
  std::string ascii;
  for (int byte = 0; byte < 0x80; ++byte) ascii.push_back(static_cast<char>(byte));
  for (const int number : kPages) {
    EXPECT_EQ(CodePage::Find(number)->FromUtf8(ascii), ascii) << number;
    EXPECT_EQ(CodePage::Find(number)->ToUtf8(ascii), ascii) << number;
    EXPECT_EQ(CodePage::Find(number)->Length(ascii), ascii.size()) << number;
  }
}

TEST(CodePageTest, SingleByteTextComesBackUnchanged) {
  std::string bytes;
  for (int byte = 0; byte < 0x100; ++byte) bytes.push_back(static_cast<char>(byte));
  for (const int number : {1250, 1251, 1252}) {
    const CodePage* page = CodePage::Find(number);
    EXPECT_EQ(page->FromUtf8(page->ToUtf8(bytes)), bytes) << number;
    for (const char byte : bytes) {
      EXPECT_FALSE(page->IsLeadByte(static_cast<unsigned char>(byte))) << number;
    }
  }
}

TEST(CodePageTest, BytesWithoutACharacterAreControlsInSingleBytePages) {
  EXPECT_EQ(CodePage::Find(1252)->ToUtf8("\x81"), "\xC2\x81");
  EXPECT_EQ(CodePage::Find(1251)->ToUtf8("\x98"), "\xC2\x98");
}

TEST(CodePageTest, EveryCharacterOfADoubleBytePageKeepsItsLengthAndItsReading) {
  for (const int number : {932, 936, 949, 950}) {
    const CodePage* page = CodePage::Find(number);
    int pairs = 0;
    for (int lead = 0x80; lead < 0x100; ++lead) {
      if (!page->IsLeadByte(static_cast<unsigned char>(lead))) continue;
      for (int trail = 0x40; trail < 0x100; ++trail) {
        const std::string bytes = {static_cast<char>(lead), static_cast<char>(trail)};
        const std::string text = page->ToUtf8(bytes);
        if (text.find("\xEF\xBF\xBD") != std::string::npos) continue;
        ++pairs;
        EXPECT_EQ(page->Length(text), 2u) << number << " " << ToHex(bytes);
        EXPECT_EQ(page->ToUtf8(page->FromUtf8(text)), text) << number << " " << ToHex(bytes);
      }
    }
    EXPECT_GT(pairs, 9000) << number;
  }
}

TEST(CodePageTest, APairWithoutACharacterIsOneReplacementCharacter) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(CodePage::Find(932)->ToUtf8("\x81\xAD!"), replacement + "!");
  EXPECT_EQ(CodePage::Find(949)->ToUtf8("\xC9\x41!"), replacement + "!");
}

TEST(CodePageTest, ALeadByteWithoutATrailByteTakesNothingWithIt) {
  const std::string replacement = "\xEF\xBF\xBD";
  for (const int number : {932, 936, 949, 950}) {
    const CodePage* page = CodePage::Find(number);
    EXPECT_EQ(page->ToUtf8("\x8A"), replacement) << number;
    EXPECT_EQ(page->ToUtf8("\x8A\r\n"), replacement + "\r\n") << number;
    EXPECT_EQ(page->ToUtf8(std::string("\x8A\0x", 3)), replacement + std::string("\0x", 2));
  }
}

TEST(CodePageTest, TheTwoSpellingsOfACharacterAreReadAlikeAndWrittenAsOne) {
  const CodePage* page = CodePage::Find(932);
  EXPECT_EQ(page->ToUtf8("\xED\x40"), page->ToUtf8("\xFA\x5C"));
  EXPECT_EQ(page->FromUtf8(page->ToUtf8("\xED\x40")), "\xFA\x5C");
}

TEST(CodePageTest, BytesThatAreNoUtf8BecomeQuestionMarks) {
  const CodePage* page = CodePage::Find(1252);
  const std::pair<std::string, std::string> cases[] = {{"a\xFFz", "a?z"},
                                                       {"\xC3", "?"},
                                                       {"\xC3z", "?z"},
                                                       {"\xE2\x82", "??"},
                                                       {"\xC0\x80", "??"},
                                                       {"\x80\x80", "??"},
                                                       {"\xF5\x80\x80\x80", "????"},
                                                       {"\xE0\x80\x80", "???"},
                                                       {"\xF4\x90\x80\x80", "????"},
                                                       {"\xE2\x82\xAC\xE2", "\x80?"}};
  for (const auto& [text, bytes] : cases) {
    EXPECT_EQ(page->FromUtf8(text), bytes) << ToHex(text);
    EXPECT_EQ(page->Length(text), bytes.size()) << ToHex(text);
  }
}

TEST(CodePageTest, NonAsciiCharactersAtEachPlaceOfALongRunAreFound) {
  const CodePage* page = CodePage::Find(1252);
  for (std::size_t place = 0; place <= 40; ++place) {
    std::string text(40, 'x'), bytes(40, 'x');
    text.insert(place, "\xC3\xA9");
    bytes.insert(place, "\xE9");
    EXPECT_EQ(page->FromUtf8(text), bytes) << place;
    EXPECT_EQ(page->ToUtf8(bytes), text) << place;
    EXPECT_EQ(page->Length(text), 41u) << place;
  }
}

}  // namespace
}  // namespace logbook::test
