// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"

#include <cstdint>
#include <cstring>

namespace logbook {

namespace {

struct Sequence {
  int length;
  char32_t smallest;
};

// What a first byte announces; length 0 if it begins nothing.
Sequence SequenceOf(unsigned char first) {
  if (first < 0x80) return {1, 0};
  if (first >= 0xC2 && first < 0xE0) return {2, 0x80};
  if (first >= 0xE0 && first < 0xF0) return {3, 0x800};
  if (first >= 0xF0 && first < 0xF5) return {4, 0x10000};
  return {0, 0};
}

}  // namespace

char32_t NextCharacter(std::string_view text, std::size_t& position) {
  const auto first = static_cast<unsigned char>(text[position]);
  const Sequence sequence = SequenceOf(first);
  const auto length = static_cast<std::size_t>(sequence.length);
  ++position;
  if (length < 2) return length == 1 ? first : kNotUtf8;
  if (text.size() - (position - 1) < length) return kNotUtf8;
  char32_t character = first & (0x7Fu >> length);
  for (std::size_t i = 0; i + 1 < length; ++i) {
    const auto next = static_cast<unsigned char>(text[position + i]);
    if ((next & 0xC0) != 0x80) return kNotUtf8;
    character = (character << 6) | (next & 0x3F);
  }
  if (character < sequence.smallest || character > 0x10FFFF) return kNotUtf8;
  position += length - 1;
  return character;
}

void AppendCharacter(char32_t character, std::string& text) {
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6));
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | (character >> 18));
    put(0x80 | ((character >> 12) & 0x3F));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

std::u16string Utf16Of(std::string_view text) {
  std::u16string units;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = NextCharacter(text, position);
    if (character == kNotUtf8) {
      units.push_back(0xFFFD);
    } else if (character < 0x10000) {
      units.push_back(static_cast<char16_t>(character));
    } else {
      units.push_back(static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10)));
      units.push_back(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
    }
  }
  return units;
}

std::size_t EndOfAscii(std::string_view text, std::size_t position) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080u;
  std::uint64_t eight = 0;
  while (text.size() - position >= sizeof eight) {
    std::memcpy(&eight, text.data() + position, sizeof eight);
    if ((eight & kHighBits) != 0) break;
    position += sizeof eight;
  }
  while (position < text.size() && static_cast<unsigned char>(text[position]) < 0x80) ++position;
  return position;
}

bool IsAscii(std::string_view text) {
  return EndOfAscii(text, 0) == text.size();
}

}  // namespace logbook
