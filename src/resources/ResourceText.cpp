// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "resources/ResourceText.h"

namespace logbook {

std::string ResourceText(int number, std::initializer_list<std::string_view> texts) {
  const std::string_view pattern = LoadResString(number);
  std::string result;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool is_place = pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] >= '1' &&
                          static_cast<std::size_t>(pattern[i + 1] - '1') < texts.size();
    if (is_place) {
      result += texts.begin()[pattern[++i] - '1'];
    } else {
      result += pattern[i];
    }
  }
  return result;
}

}  // namespace logbook
