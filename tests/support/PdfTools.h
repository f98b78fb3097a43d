// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Looks into a PDF file with tools of others: what they find is what a reader would.
#pragma once

#include <string>
#include <vector>

namespace logbook::test {

// True if this program is on the PATH.
bool HasTool(const std::string& name);

// The output of a command line; fails the test if its status is not 0.
std::string OutputOf(const std::string& command);

// Text of each page as laid out: lines and columns keep their places. `pdf` is a native path.
std::vector<std::string> PagesOf(const std::string& pdf);

// The lines of a page without blanks at their ends and without empty lines at its ends.
std::vector<std::string> LinesOf(const std::string& page);

struct PdfFont {
  std::string name;
  bool embedded = false;
};
std::vector<PdfFont> FontsOf(const std::string& pdf);

// Width and height of the first page in points.
struct PaperSize {
  double width = 0, height = 0;
};
PaperSize PaperOf(const std::string& pdf);

// A word and the place of its upper left corner on its page, in points.
struct PlacedWord {
  int page = 0;
  double left = 0, top = 0, right = 0, bottom = 0;
  std::string text;
};
std::vector<PlacedWord> WordsOf(const std::string& pdf);

// The first page as dots of 1/72 inch.
struct Picture {
  int width = 0, height = 0;
  std::string dots;  // by row, 0 black to 255 white
  // True if all dots of a row from one column to another, not included, are darker than paper.
  bool DarkBetween(int y, int from, int to) const;
};
Picture PictureOf(const std::string& pdf);

}  // namespace logbook::test

// Skips a test that needs the PDF tools on a machine that lacks them.
#define SKIP_WITHOUT_PDF_TOOLS()                                                        \
  do {                                                                                  \
    for (const char* tool : {"pdftotext", "pdffonts", "pdfinfo"}) {                     \
      if (!::logbook::test::HasTool(tool)) GTEST_SKIP() << tool << " is not installed"; \
    }                                                                                   \
  } while (false)
