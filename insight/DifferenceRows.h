// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rows of a comparison as words, for text and HTML alike. Pure.
#pragma once

#include <string>
#include <vector>

#include "insight/Difference.h"

namespace logbook::insight {

struct RowWords {
  std::string section;  // "Analog, Gas"
  std::string label;
  std::string left;  // value with its unit, or why there is none
  std::string right;
  std::string difference;  // with its sign; empty for texts and bits
  std::string percent;
};

// The rows grouped by section: sections in the order of their first rows. Where two numbers print
// alike they stand with all their digits.
std::vector<RowWords> WordsOf(const Catalogues& catalogues, const std::vector<ChangedRow>& rows);

// "Meter: no file in the new log".
std::string WordsOf(const MissingCatalogue& missing);

// "11/15/2026 05:09:59", or "no date"; with the folder in front and "automatic" behind.
std::string WordsOf(const LogHead& head);

// The ticks with ", " between them, or "none".
std::string TickWords(const LogHead& head);

}  // namespace logbook::insight
