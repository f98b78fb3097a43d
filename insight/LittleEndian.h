// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Numbers of bytes, the least first. Used inside this folder only.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace logbook::insight {

// Up to eight bytes as a number.
inline std::uint64_t WordOf(std::string_view bytes) {
  std::uint64_t word = 0;
  if constexpr (std::endian::native == std::endian::little) {
    if (bytes.size() == sizeof word) {
      std::memcpy(&word, bytes.data(), sizeof word);
      return word;
    }
  }
  for (std::size_t i = bytes.size(); i > 0; --i) {
    word = word << 8 | static_cast<unsigned char>(bytes[i - 1]);
  }
  return word;
}

}  // namespace logbook::insight
