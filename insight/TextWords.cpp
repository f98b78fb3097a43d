// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TextWords.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "base/PlainText.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"

namespace logbook::insight {
namespace {

enum class Sort { kOther, kLetter, kWhole };

struct Run {
  char32_t first;
  char32_t last;
};

// clang-format off
// Characters that are words of their own.
constexpr auto kWhole = std::to_array<Run>({
    {0x01, 0x01}, {0x3005, 0x3007}, {0x3041, 0x30FA}, {0x30FC, 0x30FF}, {0x3400, 0x4DBF},
    {0x4E00, 0x9FFF}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFF66, 0xFF9F}, {0x20000, 0x3FFFF},
});
// Characters beyond ASCII that part words: signs, blanks, brackets, symbols.
constexpr auto kParting = std::to_array<Run>({
    {0x80, 0xA9}, {0xAB, 0xB1}, {0xB4, 0xB4}, {0xB6, 0xB8}, {0xBB, 0xBF}, {0xD7, 0xD7},
    {0xF7, 0xF7}, {0x2000, 0x206F}, {0x20A0, 0x20CF}, {0x2190, 0x2BFF}, {0x3000, 0x3004},
    {0x3008, 0x3040}, {0x30FB, 0x30FB}, {0xFE10, 0xFE6F}, {0xFEFF, 0xFEFF}, {0xFF01, 0xFF0F},
    {0xFF1A, 0xFF20}, {0xFF3B, 0xFF40}, {0xFF5B, 0xFF65}, {0xFFE0, 0xFFFF},
});
// clang-format on

template <typename Runs>
bool Holds(const Runs& runs, char32_t character) {
  return std::any_of(runs.begin(), runs.end(), [character](const Run& run) {
    return character >= run.first && character <= run.last;
  });
}

Sort SortOf(char32_t character) {
  if (character == kNotUtf8) return Sort::kOther;
  if (Holds(kWhole, character)) return Sort::kWhole;
  return Holds(kParting, character) ? Sort::kOther : Sort::kLetter;
}

constexpr std::string_view kSigns = "/:.,-";

// For ASCII: the letter in upper case, the digit; 0 for what parts words.
constexpr auto kAscii = [] {
  std::array<char, 256> table{};
  for (char c = '0'; c <= '9'; ++c) table[static_cast<unsigned char>(c)] = c;
  for (char c = 'A'; c <= 'Z'; ++c) {
    table[static_cast<unsigned char>(c)] = c;
    table[static_cast<unsigned char>(c) + 32] = c;
  }
  return table;
}();

char UpperAscii(char byte) {
  return kAscii[static_cast<unsigned char>(byte)];
}
bool IsAsciiLetter(char byte) {
  return UpperAscii(byte) != 0;
}

// What a byte is to a word, at a glance.
enum class Part : char {
  kParts,  // parts words
  kWord,   // belongs to one
  kSign,   // does where it stands between digits
  kSlow,   // to be looked at as a character
};
constexpr auto kParts = [] {
  std::array<Part, 256> table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    if (kAscii[byte] != 0) table[byte] = Part::kWord;
    if (byte >= 0x80 || byte == 1) table[byte] = Part::kSlow;
  }
  for (const char sign : kSigns) table[static_cast<unsigned char>(sign)] = Part::kSign;
  return table;
}();

Part PartOf(char byte) {
  return kParts[static_cast<unsigned char>(byte)];
}

// True for a sign that stands between two digits, as in dates, times and numbers.
bool JoinsDigits(std::string_view text, std::size_t at) {
  return PartOf(text[at]) == Part::kSign && at > 0 && at + 1 < text.size() &&
         IsDigit(text[at - 1]) && IsDigit(text[at + 1]);
}

// Eight bytes at once: those from 'a' to 'z' lose the bit 20 hexadecimal. The highest bit of a byte
// tells whether its lower ones, with something added, reach 80.
std::uint64_t UpperEight(std::uint64_t eight) {
  constexpr std::uint64_t kEach = 0x0101010101010101U;
  const std::uint64_t low = eight & 0x7F * kEach;
  const std::uint64_t from_a = low + (0x80 - 'a') * kEach;
  const std::uint64_t beyond_z = low + (0x7F - 'z') * kEach;
  const std::uint64_t letters = from_a & ~beyond_z & ~eight & 0x80 * kEach;
  return eight ^ letters >> 2;
}

// The text with the letters of ASCII in upper case, all else as it is.
std::string UpperLetters(std::string_view text) {
  std::string upper(text);
  std::size_t at = 0;
  for (; upper.size() - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, upper.data() + at, sizeof eight);
    eight = UpperEight(eight);
    std::memcpy(upper.data() + at, &eight, sizeof eight);
  }
  for (; at < upper.size(); ++at) {
    if (upper[at] >= 'a' && upper[at] <= 'z') upper[at] = static_cast<char>(upper[at] - 32);
  }
  return upper;
}

// The words from a place on, where none has begun, with any characters in them; up to an ASCII
// character that parts words. Its place, or the end of the text.
std::size_t EachWordOfStretch(std::string_view text, std::size_t at, const WordSink& sink) {
  std::string word;
  std::size_t begin = at;
  const auto finish = [&](std::size_t end) {
    if (!word.empty()) sink(word, begin, end);
    word.clear();
  };
  while (at < text.size()) {
    const std::size_t start = at;
    if (word.empty()) begin = start;
    const auto byte = static_cast<unsigned char>(text[at]);
    if (IsAsciiLetter(text[at]) || JoinsDigits(text, at)) {
      word += UpperAscii(text[at]) != 0 ? UpperAscii(text[at]) : text[at];
      ++at;
      continue;
    }
    if (byte < 0x80 && byte != 1) break;
    const char32_t character = NextCharacter(text, at);
    const Sort sort = SortOf(character);
    if (sort != Sort::kLetter) finish(start);
    if (sort == Sort::kOther) continue;
    if (word.empty()) begin = start;
    AppendCharacter(UpperCase(character), word);
    if (sort == Sort::kWhole) finish(at);
  }
  finish(at);
  return at;
}

}  // namespace

void EachWord(std::string_view text, const WordSink& sink) {
  const std::string upper = UpperLetters(text);
  for (std::size_t at = 0; at < text.size();) {
    while (at < text.size() && PartOf(text[at]) == Part::kParts) ++at;
    const std::size_t begin = at;
    while (at < text.size() && (PartOf(text[at]) == Part::kWord || JoinsDigits(text, at))) ++at;
    if (at < text.size() && PartOf(text[at]) == Part::kSlow) {
      at = EachWordOfStretch(text, begin, sink);
      continue;
    }
    if (at > begin) sink(std::string_view(upper).substr(begin, at - begin), begin, at);
    ++at;
  }
}

std::vector<std::string> WordsOf(std::string_view text) {
  std::vector<std::string> words;
  EachWord(text,
           [&](std::string_view word, std::size_t, std::size_t) { words.emplace_back(word); });
  return words;
}

bool HoldsPhrase(const std::vector<std::string>& words, const std::vector<std::string>& phrase,
                 bool last_begins) {
  if (phrase.empty()) return false;
  const auto matches = [&](std::size_t at) {
    for (std::size_t i = 0; i < phrase.size(); ++i) {
      const bool begins = last_begins && i + 1 == phrase.size();
      const std::string& word = words[at + i];
      if (begins ? !word.starts_with(phrase[i]) : word != phrase[i]) return false;
    }
    return true;
  };
  for (std::size_t at = 0; at + phrase.size() <= words.size(); ++at) {
    if (matches(at)) return true;
  }
  return false;
}

}  // namespace logbook::insight
