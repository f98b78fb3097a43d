// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Walking through UTF-8 text, for the modules of this folder.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace logbook {

// Stands for a byte that is no UTF-8.
inline constexpr char32_t kNotUtf8 = 0xFFFFFFFF;

// The character at this byte position, which is moved behind it; kNotUtf8 and one byte further if
// none begins there. Half a surrogate pair in three bytes counts as a character. The position must
// lie within the text.
char32_t NextCharacter(std::string_view text, std::size_t& position);

// Appends a character, which must be below 110000 hexadecimal.
void AppendCharacter(char32_t character, std::string& text);

// The text in UTF-16 code units. A byte that is no UTF-8 becomes U+FFFD.
std::u16string Utf16Of(std::string_view text);

// The position of the first byte from here on that is not ASCII, or the text's length.
std::size_t EndOfAscii(std::string_view text, std::size_t position);

// True if the text has no other characters.
bool IsAscii(std::string_view text);

}  // namespace logbook
