// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CommandLine.h"

#include <algorithm>

#include "base/win32/System.h"

namespace logbook {

std::string CommandLineOf(int, const char* const*) {
  std::wstring_view line = GetCommandLineW();
  // The name ends at a blank, or at its closing quote if it begins with one.
  const std::size_t end = line.starts_with(L'"') ? line.find(L'"', 1) : line.find(L' ');
  if (end == std::wstring_view::npos) return {};
  line.remove_prefix(line[end] == L'"' ? end + 1 : end);
  // Shells and toolkits put one blank there or two; programs here never see them.
  line.remove_prefix(std::min(line.find_first_not_of(L" \t"), line.size()));
  return win32::Narrow(line);
}

}  // namespace logbook
