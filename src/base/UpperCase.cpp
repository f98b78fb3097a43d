// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/UpperCase.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "base/Utf8.h"

namespace logbook {

namespace {

struct LetterRun {
  char16_t first;
  char16_t last;
  std::uint8_t step;
  std::int32_t distance;
};

constexpr LetterRun kLetterRuns[] = {
#include "base/UpperCase.inc"
};

constexpr bool RunsAscend() {
  for (std::size_t i = 1; i < std::size(kLetterRuns); ++i) {
    if (kLetterRuns[i].first <= kLetterRuns[i - 1].last) return false;
  }
  return true;
}
static_assert(RunsAscend());

constexpr char UpperCaseByte(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

bool EqualBytes(char a, char b) {
  return UpperCaseByte(a) == UpperCaseByte(b);
}

}  // namespace

char32_t UpperCase(char32_t character) {
  if (character < 0x80) {
    return static_cast<unsigned char>(UpperCaseByte(static_cast<char>(character)));
  }
  const auto* run =
      std::upper_bound(std::begin(kLetterRuns), std::end(kLetterRuns), character,
                       [](char32_t wanted, const LetterRun& r) { return wanted < r.first; });
  if (run == std::begin(kLetterRuns)) return character;
  --run;
  if (character > run->last || (character - run->first) % run->step != 0) return character;
  return static_cast<char32_t>(static_cast<std::int32_t>(character) + run->distance);
}

std::string UpperCaseText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  std::size_t position = 0;
  while (true) {
    const std::size_t end = EndOfAscii(text, position);
    const auto done = static_cast<std::ptrdiff_t>(result.size());
    result.append(text.substr(position, end - position));
    std::transform(result.begin() + done, result.end(), result.begin() + done, UpperCaseByte);
    position = end;
    if (position == text.size()) break;
    const std::size_t start = position;
    const char32_t character = NextCharacter(text, position);
    if (character == kNotUtf8) {
      result.push_back(text[start]);
    } else {
      AppendCharacter(UpperCase(character), result);
    }
  }
  return result;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b))
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), EqualBytes);
  return UpperCaseText(a) == UpperCaseText(b);
}

bool EndsInIgnoringCase(std::string_view text, std::string_view end) {
  return UpperCaseText(text).ends_with(UpperCaseText(end));
}

bool ContainsIgnoringCase(std::string_view text, std::string_view word) {
  if (IsAscii(text) && IsAscii(word)) {
    return word.empty() || std::search(text.begin(), text.end(), word.begin(), word.end(),
                                       EqualBytes) != text.end();
  }
  return UpperCaseText(text).find(UpperCaseText(word)) != std::string::npos;
}

}  // namespace logbook
