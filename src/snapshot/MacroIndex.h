// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A macro variable file for the searches of many rows at once: each gives what FindMacroLines
// (snapshot/MacroFile.h) gives for the file's lines, at the cost of a look at each line's summary.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CodePage.h"
#include "base/Machine.h"
#include "snapshot/MacroFile.h"

namespace logbook {

class MacroIndex {
 public:
  // Takes the file's bytes, which are in this code page.
  MacroIndex(const CodePage& code_page, std::string_view bytes);

  // The lines that bear on a variable, and on each of several.
  MacroLines Find(std::string_view var) const;
  std::vector<MacroLines> Find(std::span<const std::string> vars) const;

 private:
  // Which pairs of neighbouring bytes a text holds, a bit for several pairs.
  using Pairs = std::uint64_t;
  struct Line {
    std::string text, upper;  // UTF-8; in upper case
    Pairs pairs = 0;          // of the upper case
  };

  static Pairs PairsOf(std::string_view text);
  // True if the line holds the word, in upper case, whose pairs these are.
  static bool Holds(const Line& line, std::string_view upper_word, Pairs pairs);

  std::vector<Line> lines_;                   // those with an equal sign
  std::vector<std::size_t> col_opgs_, clmd_;  // the lines that hold these words, by their places
};

// What ReadMacroLines gives for each of these variables. A file of any size is read in bounded
// memory, a large one without an index. Raises what InputFile raises.
std::vector<MacroLines> ReadMacroLines(const Machine& machine, std::string_view path,
                                       std::span<const std::string> vars);

}  // namespace logbook
