// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PrivateName.h"

#include <algorithm>
#include <random>

namespace logbook {
namespace {

constexpr std::size_t kEnding = 7;  // a point and six letters or digits

bool IsLetterOrDigit(char byte) {
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z');
}

}  // namespace

std::string NewPrivateName(const std::string& path) {
  constexpr std::string_view kLetters = "0123456789abcdefghijklmnopqrstuvwxyz";
  std::random_device random;
  std::string name = path + ".";
  for (std::size_t i = 1; i < kEnding; ++i) name += kLetters[random() % kLetters.size()];
  return name;
}

bool IsPrivateName(std::string_view name, std::string_view file) {
  if (name.size() < kEnding || name[name.size() - kEnding] != '.') return false;
  const std::string_view letters = name.substr(name.size() - kEnding + 1);
  name.remove_suffix(kEnding);
  const std::size_t point = file.rfind('.');
  return std::all_of(letters.begin(), letters.end(), IsLetterOrDigit) &&
         (name == file || (point != file.npos && name.ends_with(file.substr(point))));
}

}  // namespace logbook
