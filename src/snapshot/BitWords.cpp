// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/BitWords.h"

#include <cstddef>
#include <string>

#include "text/LeadingNumber.h"
#include "text/TextParts.h"

namespace logbook {
namespace {

constexpr int kDigits = 4;

std::string_view LastCharacters(std::string_view text, int count) {
  std::size_t begin = text.size();
  while (begin > 0 && count > 0) {
    --begin;
    if (BeginsCharacter(text[begin])) --count;
  }
  return text.substr(begin);
}

}  // namespace

std::uint16_t BitWord(std::string_view field) {
  return FindBitWord(field).value_or(std::uint16_t{0});
}

std::optional<std::uint16_t> FindBitWord(std::string_view field) {
  const std::string digits = "&H" + std::string(LastCharacters(field, kDigits));
  const std::optional<double> word = FindLeadingNumber(digits);
  if (!word) return std::nullopt;
  return static_cast<std::uint16_t>(*word);
}

BitWords ReadBitWords(SequentialReader& file) {
  BitWords words{};
  for (std::uint16_t& word : words) word = BitWord(file.ReadTextEnd());
  return words;
}

}  // namespace logbook
