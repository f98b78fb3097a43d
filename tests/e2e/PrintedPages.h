// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A printed sheet as a reader of its PDF file finds it. The sheet's font has a fixed pitch, so that
// the place of a word tells its row and its column.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "support/PdfTools.h"

namespace logbook::e2e {

struct PrintedPage {
  double width = 0, height = 0;         // in points
  std::vector<std::string> body;        // row by row, empty ones too, without blanks at the end
  std::string header;                   // its words with a blank between
  std::vector<test::PlacedWord> words;  // all of the page
  std::vector<test::PlacedWord> footer;
};

// The pages of a PDF file, by its native path.
std::vector<PrintedPage> ReadPrintedPages(const std::string& pdf);

// The rows of all pages, one page below the other.
std::vector<std::string> RowsOf(const std::vector<PrintedPage>& pages);

// Expects on every page this header, "Page n/m" in the middle of the footer, and at its right edge
// a date and a time that lie between these two.
void ExpectMargins(const std::vector<PrintedPage>& pages, const std::string& header,
                   std::time_t from, std::time_t to);

// Expects fonts, all of them in the file.
void ExpectFontsEmbedded(const std::string& pdf);

}  // namespace logbook::e2e
