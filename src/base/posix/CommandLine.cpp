// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CommandLine.h"

namespace logbook {

std::string CommandLineOf(int argc, const char* const* argv) {
  std::string line;
  for (int i = 1; i < argc; ++i) {
    if (i > 1) line += ' ';
    line += argv[i];
  }
  return line;
}

CommandWords::CommandWords(int argc, const char* const* argv) : words_(argv, argv + argc) {
  for (const std::string& word : words_) pointers_.push_back(word.c_str());
  pointers_.push_back(nullptr);
}

}  // namespace logbook
