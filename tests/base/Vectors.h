// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The recorded cases in tests/data: reading them and their hexadecimal texts.
#pragma once

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace logbook::test {

inline nlohmann::json ReadCases(const std::string& name) {
  std::ifstream in(std::string(TEST_DATA_DIR) + "/" + name);
  if (!in) throw std::runtime_error("missing " + name);
  return nlohmann::json::parse(in).at("cases");
}

inline std::string FromHex(const std::string& hex) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

inline std::string ToHex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    hex.push_back(kDigits[value >> 4]);
    hex.push_back(kDigits[value & 15]);
  }
  return hex;
}

}  // namespace logbook::test
