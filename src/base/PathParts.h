// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The parts of path texts, the same on every system. Used inside this folder only.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// Around a component that is to be found exactly as it is written.
inline constexpr char kQuote = '"';

constexpr bool IsSeparator(char byte) {
  return byte == '\\' || byte == '/';
}

constexpr bool IsLetter(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

// True if the path begins with a drive's letter and a colon.
constexpr bool HasDrive(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && IsLetter(path[0]);
}

// The component without quotes around it; none are taken from one that has nothing between them.
std::string_view WithoutQuotes(std::string_view component);

std::string WithBackslashes(std::string native_path);

}  // namespace logbook
