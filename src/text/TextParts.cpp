// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "text/TextParts.h"

namespace logbook {

std::string FirstCharacters(std::string_view text, int count) {
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    if (BeginsCharacter(text[end]) && count-- == 0) break;
  }
  return std::string(text.substr(0, end));
}

std::string LastDigits(int number, std::size_t width) {
  const std::string digits = std::string(width, '0') + std::to_string(number);
  return digits.substr(digits.size() - width);
}

}  // namespace logbook
