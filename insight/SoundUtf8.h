// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Walking through text that leaves the program: what reads it knows no half surrogate pairs, which
// names of folders may hold. Pure.
#pragma once

#include "base/Utf8.h"

namespace logbook::insight {

// As NextCharacter, but that half a surrogate pair is no UTF-8 either: kNotUtf8, one byte further.
inline char32_t NextSoundCharacter(std::string_view text, std::size_t& position) {
  const std::size_t begin = position;
  const char32_t character = NextCharacter(text, position);
  if (character < 0xD800 || character > 0xDFFF) return character;
  position = begin + 1;
  return kNotUtf8;
}

}  // namespace logbook::insight
