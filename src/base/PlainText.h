// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The smallest questions about texts, for every room. They look at bytes, whatever the encoding,
// and raise nothing.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// True for "0" to "9".
constexpr bool IsDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

// What stands before the first NUL; the whole text if it has none. Texts of the workstation's own
// calls end there.
constexpr std::string_view UpToNul(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

// The text with a backslash at its end, added unless it stands there.
inline std::string WithBackslash(std::string text) {
  if (!text.ends_with('\\')) text += '\\';
  return text;
}

}  // namespace logbook
