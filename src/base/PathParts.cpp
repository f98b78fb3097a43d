// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/PathParts.h"

#include <algorithm>

#include "base/Files.h"

namespace logbook {

std::string_view WithoutQuotes(std::string_view component) {
  const bool quoted =
      component.size() > 2 && component.front() == kQuote && component.back() == kQuote;
  return quoted ? component.substr(1, component.size() - 2) : component;
}

std::string WithBackslashes(std::string native_path) {
  std::replace(native_path.begin(), native_path.end(), '/', '\\');
  return native_path;
}

std::string ExactFolder(std::string_view path) {
  while (!path.empty() && IsSeparator(path.back())) path.remove_suffix(1);
  const std::size_t above = path.find_last_of("\\/");
  const std::size_t begin = above != std::string_view::npos ? above + 1 : HasDrive(path) ? 2 : 0;
  std::string exact(path.substr(0, begin));
  if (begin < path.size()) exact.append({kQuote}).append(path.substr(begin)).append({kQuote});
  return exact + '\\';
}

std::string TypedPathText(const std::string& path) {
  return HasDrive(path) || path.find('\\') != std::string::npos ? path : PathText(path);
}

}  // namespace logbook
