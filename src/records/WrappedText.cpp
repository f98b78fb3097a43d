// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "records/WrappedText.h"

#include <cstddef>
#include <string_view>

#include "base/RunTimeError.h"
#include "text/TextParts.h"

namespace logbook {

namespace {

// The bytes of the UTF-8 character that begins at `position`.
std::string_view CharacterAt(std::string_view text, std::size_t position) {
  std::size_t length = 1;
  while (position + length < text.size() && !BeginsCharacter(text[position + length])) ++length;
  return text.substr(position, length);
}

// True if the text has more than two characters, in UTF-16 units as text boxes count them.
bool IsLongerThanTwo(std::string_view text) {
  int units = 0;
  for (std::size_t i = 0; i < text.size() && units <= 2;) {
    const std::string_view character = CharacterAt(text, i);
    units += character.size() == 4 ? 2 : 1;
    i += character.size();
  }
  return units > 2;
}

// Moves characters of `text` to `result` until `byte_count` bytes of the code page have passed.
// Returns false if the text ends before.
bool TakeUpTo(const CodePage& page, std::string_view text, std::size_t& position, long& byte_count,
              long offset, std::string& result) {
  while (byte_count < offset) {
    if (position >= text.size()) return false;
    const std::string_view character = CharacterAt(text, position);
    result += character;
    position += character.size();
    byte_count += static_cast<long>(page.Length(character));
  }
  return true;
}

}  // namespace

std::string GetWrappedText(const Machine& machine, const WrappedTextBox& box) {
  std::string text = box.Text();
  const int lines = box.LineCount();
  std::string result;
  try {
    if (lines < 2) return text;
    std::size_t position = 0;
    long byte_count = 0;
    for (int line = 1; line <= lines; ++line) {
      const long offset = box.LineIndex(line);
      if (offset > 0) {
        if (!TakeUpTo(*machine.code_page, text, position, byte_count, offset, result))
          return result;
        if (IsLongerThanTwo(result) && !result.ends_with("\r\n")) result += "\r\n";
      } else {
        result += text.substr(position);
        position = text.size();
      }
    }
  } catch (const RunTimeError&) {
    // A partial text is better than none.
  }
  return result;
}

}  // namespace logbook
