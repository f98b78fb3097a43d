// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Markup.h"

#include <array>
#include <charconv>
#include <cmath>

#include "base/Utf8.h"

namespace logbook::insight {
namespace {

// Half a surrogate pair is a character to NextCharacter and none to a browser.
bool IsText(char32_t character) {
  if (character == kNotUtf8) return false;
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  if (character >= 0x7F && character < 0xA0) return false;
  return (character < 0xD800 || character > 0xDFFF) && character != 0xFFFE && character != 0xFFFF;
}

}  // namespace

std::string CleanText(std::string_view text) {
  std::string clean;
  std::size_t position = 0;
  while (position < text.size()) {
    const std::size_t from = position;
    if (IsText(NextCharacter(text, position))) {
      clean += text.substr(from, position - from);
    } else {
      clean += "\xEF\xBF\xBD";
    }
  }
  return clean;
}

std::string EscapeMarkup(std::string_view text) {
  std::string escaped;
  for (const char each : CleanText(text)) {
    switch (each) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&#39;";
        break;
      default:
        escaped += each;
    }
  }
  return escaped;
}

std::string Length(double value) {
  const double rounded = std::round(value * 100) / 100;
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                 rounded == 0 ? 0.0 : rounded, std::chars_format::fixed, 2);
  std::string text(buffer.data(), end.ptr);
  while (text.ends_with('0')) text.pop_back();
  if (text.ends_with('.')) text.pop_back();
  return text;
}

}  // namespace logbook::insight
