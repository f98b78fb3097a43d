// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/MacroSearch.h"

#include <algorithm>
#include <functional>

#include "base/Utf8.h"

namespace logbook {
namespace {

constexpr std::string_view kColOpgs = "OPT_COLOPGS";
constexpr std::string_view kClmd = "CLMD";
constexpr std::string_view kLineEnds = "\r\n";

bool IsLineEnd(char byte) {
  return byte == '\r' || byte == '\n';
}

std::string AsciiUpper(std::string_view text) {
  std::string upper(text);
  for (char& byte : upper) {
    byte = static_cast<char>(byte - (byte >= 'a' && byte <= 'z' ? 'a' - 'A' : 0));
  }
  return upper;
}

}  // namespace

// Neither a line end nor "=" is ever a part of a double-byte character, so the whole text may be
// converted at once. No letter beyond ASCII has an ASCII one as its upper case, so a word of ASCII
// letters is found without looking at the others.
MacroSearch::MacroSearch(const CodePage& code_page, std::string_view bytes)
    : text_(IsAscii(bytes) ? std::string(bytes) : code_page.ToUtf8(bytes)),
      upper_(AsciiUpper(text_)),
      col_opgs_(AssignmentsWith(kColOpgs)),
      clmd_(AssignmentsWith(kClmd)) {}

MacroSearch::Line MacroSearch::LineAt(std::size_t place) const {
  std::size_t begin = place;
  while (begin > 0 && !IsLineEnd(text_[begin - 1])) --begin;
  std::size_t end = place;
  while (end < text_.size() && !IsLineEnd(text_[end])) ++end;
  return {begin, end};
}

bool MacroSearch::Holds(const Line& line, std::string_view upper_word) const {
  return std::string_view(upper_).substr(line.begin, line.end - line.begin).find(upper_word) !=
         std::string_view::npos;
}

bool MacroSearch::IsAssignment(const Line& line) const {
  const auto begin = text_.begin() + static_cast<std::ptrdiff_t>(line.begin);
  const auto end = text_.begin() + static_cast<std::ptrdiff_t>(line.end);
  return std::find(begin, end, '=') != end;
}

std::vector<MacroSearch::Line> MacroSearch::AssignmentsWith(std::string_view upper_word) const {
  std::vector<Line> lines;
  const std::boyer_moore_horspool_searcher word(upper_word.begin(), upper_word.end());
  auto place = upper_.begin();
  while ((place = std::search(place, upper_.end(), word)) != upper_.end()) {
    const Line line = LineAt(static_cast<std::size_t>(place - upper_.begin()));
    if (IsAssignment(line)) lines.push_back(line);
    place = upper_.begin() + static_cast<std::ptrdiff_t>(line.end);
  }
  return lines;
}

MacroLines MacroSearch::FindLineByLine(std::string_view var) const {
  MacroLines lines;
  for (std::size_t begin = 0; begin < text_.size();) {
    const Line line = LineAt(begin);
    TakeMacroLine(lines, Text(line), var);
    begin = line.end + 1;
  }
  return lines;
}

MacroLines MacroSearch::Find(std::string_view var) const {
  if (var.empty() || !IsAscii(var) || var.find_first_of(kLineEnds) != std::string_view::npos) {
    return FindLineByLine(var);
  }
  const std::string upper_var = AsciiUpper(var);
  const auto last_without = [&](const std::vector<Line>& lines,
                                std::string_view other_word) -> std::string {
    const auto last = std::find_if(lines.rbegin(), lines.rend(), [&](const Line& line) {
      return !Holds(line, upper_var) && (other_word.empty() || !Holds(line, other_word));
    });
    return last == lines.rend() ? std::string() : Text(*last);
  };
  const std::vector<Line> values = AssignmentsWith(upper_var);
  return {.Value = values.empty() ? std::string() : Text(values.back()),
          .ColOpgs = last_without(col_opgs_, {}),
          .Clmd = last_without(clmd_, kColOpgs)};
}

}  // namespace logbook
