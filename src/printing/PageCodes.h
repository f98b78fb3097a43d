// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The language of page headers and footers. A text of it is what stands on every page, with codes
// in it, each an ampersand and what follows:
//
//   &L &C &R    what follows stands at the left, in the centre, at the right; the centre at start
//   &A          name of the sheet
//   &P &N       number of the page, number of pages
//   &D &T       date and time of the print
//   &"Name"     font for the rest of the part
//   &9          size in points for the rest of the part: all digits that follow
//   &&          an ampersand
//
// Letters count in this case only. Any other code prints nothing, and so does an ampersand at the
// end of the text or a font name without its second quote.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace logbook {

// What the codes stand for on one page.
struct PageFacts {
  std::string SheetName;
  int Page = 1, Pages = 1;
  std::string Date, Time;
};

// A piece of one font. Nothing: the sheet's default.
struct PageRun {
  std::string Text;  // UTF-8, never empty
  std::optional<std::string> FontName;
  std::optional<int> FontSize;  // points
  bool operator==(const PageRun&) const = default;
};

struct PageText {
  std::vector<PageRun> Left, Centre, Right;
};

// The three parts of a header or footer on the page with these facts. A part named twice grows;
// each naming returns to the default font. Raises nothing.
PageText ExpandPageCodes(std::string_view codes, const PageFacts& facts);

}  // namespace logbook
