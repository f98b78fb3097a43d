// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Native paths for the standard library. It takes a plain text for one in the code page of the
// locale where the system's own paths are UTF-16; ours are UTF-8 everywhere. Back, string() and
// generic_string() are UTF-8 anyway.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace logbook {

inline std::filesystem::path Utf8Path(std::string_view native_path) {
  return {std::u8string(native_path.begin(), native_path.end())};
}

}  // namespace logbook
