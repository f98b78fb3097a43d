// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Csv.h"

#include <array>
#include <charconv>
#include <utility>

#include "insight/SoundUtf8.h"

namespace logbook::insight {

std::string Neutralised(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::string(text);
  constexpr std::string_view kDangerous = "=+-@\t\r\n";
  const bool dangerous = kDangerous.find(text[first]) != std::string_view::npos;
  return (dangerous ? "'" : "") + std::string(text);
}

std::string ExactNumber(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), end.ptr};
}

namespace {

// The text with U+FFFD for each byte that is no UTF-8.
std::string WholeUtf8(std::string_view text) {
  std::string whole;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const bool sound = NextSoundCharacter(text, at) != kNotUtf8;
    whole += sound ? text.substr(begin, at - begin) : std::string_view("\xEF\xBF\xBD");
  }
  return whole;
}

}  // namespace

CsvLine& CsvLine::Add(std::string_view any) {
  const std::string whole = IsAscii(any) ? std::string() : WholeUtf8(any);
  const std::string_view field = IsAscii(any) ? any : std::string_view(whole);
  if (!empty_) line_ += ',';
  empty_ = false;
  if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
    line_ += field;
    return *this;
  }
  line_ += '"';
  for (const char each : field) {
    if (each == '"') line_ += '"';
    line_ += each;
  }
  line_ += '"';
  return *this;
}

std::string CsvLine::Take() {
  empty_ = true;
  return std::exchange(line_, {}) + "\r\n";
}

}  // namespace logbook::insight
