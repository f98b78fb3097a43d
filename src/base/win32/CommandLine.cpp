// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CommandLine.h"

#include <algorithm>
#include <memory>
#include <new>

#include "base/win32/System.h"
// Behind the system's own header.
#include <shellapi.h>

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

CommandWords::CommandWords(int, const char* const*) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  if (words == nullptr) throw std::bad_alloc();
  for (int i = 0; i < count; ++i) words_.push_back(win32::Narrow(words.get()[i]));
  for (const std::string& word : words_) pointers_.push_back(word.c_str());
  pointers_.push_back(nullptr);
}

}  // namespace logbook
