// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A macro variable file that is at hand as a whole, for many searches: each gives what
// FindMacroLines (snapshot/MacroFile.h) gives for the file's lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/CodePage.h"
#include "snapshot/MacroFile.h"

namespace logbook {

class MacroSearch {
 public:
  // Takes the file's bytes, which are in this code page.
  MacroSearch(const CodePage& code_page, std::string_view bytes);

  // The lines that bear on a variable.
  MacroLines Find(std::string_view var) const;

 private:
  struct Line {
    std::size_t begin, end;  // in text_, without the line end
  };

  // The line around this place.
  Line LineAt(std::size_t place) const;
  std::string Text(const Line& line) const {
    return text_.substr(line.begin, line.end - line.begin);
  }
  bool Holds(const Line& line, std::string_view upper_word) const;
  bool IsAssignment(const Line& line) const;
  std::vector<Line> AssignmentsWith(std::string_view upper_word) const;
  MacroLines FindLineByLine(std::string_view var) const;

  std::string text_;                   // UTF-8
  std::string upper_;                  // the same with ASCII letters in upper case
  std::vector<Line> col_opgs_, clmd_;  // the assignments that hold these words
};

}  // namespace logbook
