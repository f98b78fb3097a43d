// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CodePage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <vector>

#include "Vectors.h"
#include "base/Files.h"
#include "base/Utf8.h"
#include "support/TestMachine.h"

namespace logbook::test {
namespace {

constexpr int kSingleBytePages[] = {874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258};
constexpr int kDoubleBytePages[] = {932, 936, 949, 950};

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
  EXPECT_EQ(count, 4135);
}

TEST(CodePageTest, PagesOfOtherNumbersAreUnknown) {
  for (const int number : {0, 1, 437, 850, 1249, 1259, 65001, -1252}) {
    EXPECT_EQ(CodePage::Find(number), nullptr) << number;
  }
  for (const int number : CodePage::Numbers()) {
    EXPECT_EQ(CodePage::Find(number)->Number(), number);
  }
  EXPECT_THAT(CodePage::Numbers(), testing::ElementsAre(874, 932, 936, 949, 950, 1250, 1251, 1252,
                                                        1253, 1254, 1255, 1256, 1257, 1258));
}

TEST(CodePageTest, TheLastByteIsOneAndACharacterBeyondThe16BitsIsTwoQuestionMarks) {
  const CodePage& western = *CodePage::Find(1252);
  EXPECT_EQ(western.FromUtf8("\xC3\xBF"), "\xFF");
  EXPECT_EQ(western.Length("\xC3\xBF"), 1u);
  EXPECT_EQ(western.FromUtf8(TextOfCharacter(0xFFFD)), "?");
  for (const int number : CodePage::Numbers()) {
    const CodePage& page = *CodePage::Find(number);
    for (const char32_t character : {U'\x10000', U'\x10001', U'\x10041', U'\x10FFFF'}) {
      EXPECT_EQ(page.FromUtf8(TextOfCharacter(character)), "??") << number;
      EXPECT_EQ(page.Length(TextOfCharacter(character)), 2u) << number;
    }
  }
}

TEST(CodePageTest, AsciiIsTheSameInAllPagesNulAndControlsIncluded) {
  std::string ascii;
  for (int byte = 0; byte < 0x80; ++byte) ascii.push_back(static_cast<char>(byte));
  for (const int number : CodePage::Numbers()) {
    EXPECT_EQ(CodePage::Find(number)->FromUtf8(ascii), ascii) << number;
    EXPECT_EQ(CodePage::Find(number)->ToUtf8(ascii), ascii) << number;
    EXPECT_EQ(CodePage::Find(number)->Length(ascii), ascii.size()) << number;
  }
}

TEST(CodePageTest, SingleByteTextComesBackUnchanged) {
  std::string bytes;
  for (int byte = 0; byte < 0x100; ++byte) bytes.push_back(static_cast<char>(byte));
  for (const int number : kSingleBytePages) {
    const CodePage* page = CodePage::Find(number);
    EXPECT_EQ(page->FromUtf8(page->ToUtf8(bytes)), bytes) << number;
    for (const char byte : bytes) {
      EXPECT_FALSE(page->IsLeadByte(static_cast<unsigned char>(byte))) << number;
    }
  }
}

TEST(CodePageTest, BytesWithoutACharacterAreControlsOrForPrivateUseInSingleBytePages) {
  EXPECT_EQ(CodePage::Find(1252)->ToUtf8("\x81"), "\xC2\x81");
  EXPECT_EQ(CodePage::Find(1251)->ToUtf8("\x98"), "\xC2\x98");
  EXPECT_EQ(CodePage::Find(1253)->ToUtf8("\xAA"), TextOfCharacter(0xF8F9));
  EXPECT_EQ(CodePage::Find(874)->ToUtf8("\xFF"), TextOfCharacter(0xF8C8));
}

// All codes of a page that stand for a character.
std::vector<std::string> DefinedCodes(const CodePage& page) {
  std::vector<std::string> codes;
  for (int first = 0x80; first < 0x100; ++first) {
    const std::string lead(1, static_cast<char>(first));
    if (!page.IsLeadByte(static_cast<unsigned char>(first))) {
      codes.push_back(lead);
      continue;
    }
    for (int trail = 0x40; trail < 0x100; ++trail) codes.push_back(lead + static_cast<char>(trail));
  }
  const std::string none = TextOfCharacter(0xFFFD);
  std::erase_if(
      codes, [&](const auto& code) { return page.ToUtf8(code).find(none) != std::string::npos; });
  return codes;
}

TEST(CodePageTest, EveryDefinedCodeOfEveryPageComesBackFromARoundThroughAFile) {
  // What stands twice in a page is written in one way.
  const std::map<int, std::size_t> doubles = {{932, 398}, {950, 10}};
  for (const int number : CodePage::Numbers()) {
    const TestMachine machine(number);
    const CodePage& page = *machine.machine().code_page;
    const std::vector<std::string> codes = DefinedCodes(page);
    std::string text, bytes;
    std::map<std::string, std::vector<std::string>> codes_of;
    for (const std::string& code : codes) {
      codes_of[page.ToUtf8(code)].push_back(code);
      text += page.ToUtf8(code) + "\r\n";
      bytes += code + "\r\n";
    }
    machine.Put("C:\\read.txt", bytes);
    const std::string read = page.ToUtf8(ReadFile(machine, "C:\\read.txt"));
    EXPECT_TRUE(read == text) << number;
    WriteFile(machine, "C:\\written.txt", page.FromUtf8(read));
    EXPECT_TRUE(page.ToUtf8(machine.Get("C:\\written.txt")) == text) << number;
    for (const auto& [character, all] : codes_of) {
      EXPECT_THAT(all, testing::Contains(page.FromUtf8(character))) << number << " " << character;
    }
    const auto known = doubles.find(number);
    EXPECT_EQ(codes.size() - codes_of.size(), known == doubles.end() ? 0 : known->second) << number;
  }
}

TEST(CodePageTest, OfTwoCodesForOneCharacterTheSettledOneIsWritten) {
  const CodePage* page = CodePage::Find(950);
  const std::pair<const char*, const char*> cases[] = {
      {"\xA2\xA4", "\xF9\xF9"}, {"\xA2\xA5", "\xF9\xE9"}, {"\xA2\xA6", "\xF9\xEA"},
      {"\xA2\xA7", "\xF9\xEB"}, {"\xF9\xFA", "\xA2\x7E"}, {"\xA2\xCC", "\xA4\x51"}};
  for (const auto& [read, written] : cases) {
    EXPECT_EQ(ToHex(page->FromUtf8(page->ToUtf8(read))), ToHex(written)) << ToHex(read);
    EXPECT_EQ(ToHex(page->FromUtf8(page->ToUtf8(written))), ToHex(written)) << ToHex(read);
  }
}

TEST(CodePageTest, CodesForPrivateUseOfADoubleBytePageAreRead) {
  EXPECT_EQ(CodePage::Find(936)->ToUtf8("\xA2\xAB"), TextOfCharacter(0xE766));
  EXPECT_EQ(CodePage::Find(936)->ToUtf8("\xFE\xA0"), TextOfCharacter(0xE864));
  EXPECT_EQ(CodePage::Find(936)->ToUtf8("\xFF"), TextOfCharacter(0xF8F5));
  EXPECT_EQ(CodePage::Find(949)->ToUtf8("\xFF"), TextOfCharacter(0xF8F7));
  EXPECT_EQ(CodePage::Find(950)->ToUtf8("\xFF"), TextOfCharacter(0xF8F8));
}

TEST(CodePageTest, CodesForPrivateUseOfTheSimplifiedChinesePageFollowEachOther) {
  constexpr std::pair<int, int> kRanges[] = {
      {0xA2AB, 0xA2B0}, {0xA2E3, 0xA2E4}, {0xA2EF, 0xA2F0}, {0xA2FD, 0xA2FE}, {0xA4F4, 0xA4FE},
      {0xA5F7, 0xA5FE}, {0xA6B9, 0xA6C0}, {0xA6D9, 0xA6DF}, {0xA6EC, 0xA6ED}, {0xA6F3, 0xA6F3},
      {0xA6F6, 0xA6FE}, {0xA7C2, 0xA7D0}, {0xA7F2, 0xA7FE}, {0xA896, 0xA8A0}, {0xA8BC, 0xA8BC},
      {0xA8BF, 0xA8BF}, {0xA8C1, 0xA8C4}, {0xA8EA, 0xA8FE}, {0xA958, 0xA958}, {0xA95B, 0xA95B},
      {0xA95D, 0xA95F}, {0xA989, 0xA995}, {0xA997, 0xA9A3}, {0xA9F0, 0xA9FE}, {0xD7FA, 0xD7FE},
      {0xFE50, 0xFE7E}, {0xFE80, 0xFEA0}};
  const CodePage* page = CodePage::Find(936);
  char32_t character = 0xE766;
  for (const auto& [first, last] : kRanges) {
    for (int code = first; code <= last; ++code, ++character) {
      const std::string bytes = {static_cast<char>(code >> 8), static_cast<char>(code & 0xFF)};
      EXPECT_EQ(page->ToUtf8(bytes), TextOfCharacter(character)) << ToHex(bytes);
      EXPECT_EQ(ToHex(page->FromUtf8(TextOfCharacter(character))), ToHex(bytes));
    }
  }
  EXPECT_EQ(character, 0xE865u);
}

TEST(CodePageTest, EveryCharacterOfADoubleBytePageKeepsItsLengthAndItsReading) {
  for (const int number : kDoubleBytePages) {
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
  for (const int number : kDoubleBytePages) {
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
