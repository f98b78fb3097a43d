// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/VisibleText.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "insight/SoundUtf8.h"

namespace logbook::insight {
namespace {

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// Marks, embeddings, overrides and isolates of the direction of writing.
bool TurnsDirection(char32_t character) {
  return character == 0x061C || character == 0x200E || character == 0x200F ||
         (character >= 0x202A && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

std::string Code(const char* picture, char32_t value) {
  std::array<char, 16> code{};
  std::snprintf(code.data(), code.size(), picture, static_cast<unsigned>(value));
  return code.data();
}

// All but the characters of `kept`.
std::string Visible(std::string_view text, std::string_view kept) {
  std::string visible;
  visible.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const char32_t character = NextSoundCharacter(text, at);
    if (character == kNotUtf8) {
      visible += Code("\\x%02X", static_cast<unsigned char>(text[begin]));
    } else if (IsControl(character) && kept.find(text[begin]) == std::string_view::npos) {
      visible += Code(character < 0x80 ? "\\x%02X" : "\\u%04X", character);
    } else if (TurnsDirection(character)) {
      visible += Code("\\u%04X", character);
    } else {
      visible += text.substr(begin, at - begin);
    }
  }
  return visible;
}

}  // namespace

std::string VisibleText(std::string_view text) {
  return Visible(text, "\n\t");
}

std::string VisibleName(std::string_view name) {
  return Visible(name, "");
}

}  // namespace logbook::insight
