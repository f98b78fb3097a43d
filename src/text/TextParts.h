// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Characters of UTF-8 texts, and the digits of dates and names. None raises anything.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace logbook {

// False for the second and later bytes of a character in UTF-8.
constexpr bool BeginsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// The first characters of a UTF-8 text, not bytes; the whole text if it has no more.
std::string FirstCharacters(std::string_view text, int count);

// The last `width` decimal digits of a number of 0 or more, with zeros in front.
std::string LastDigits(int number, std::size_t width);

}  // namespace logbook
