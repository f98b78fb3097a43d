// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The names of working files.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// The working name for a zip file's name, without folders. Hidden; it has room for the number
// behind a name of any length.
inline std::string WorkingName(const std::string& zip_name, int number) {
  constexpr std::size_t kMostOfName = 200;
  return "." + zip_name.substr(0, kMostOfName) + "." + std::to_string(number) + ".part";
}

// True for the working name of any zip file.
inline bool IsWorkingName(std::string_view name) {
  if (name.ends_with("2")) name.remove_suffix(1);
  constexpr std::string_view kEnding = ".part";
  if (!name.starts_with('.') || !name.ends_with(kEnding)) return false;
  name.remove_suffix(kEnding.size());
  const std::size_t number = name.find_last_not_of("0123456789") + 1;
  return number > 2 && number < name.size() && name[number - 1] == '.';
}

}  // namespace logbook
