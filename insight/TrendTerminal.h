// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A trend as text for a terminal: the curve drawn with Braille dots or, where the terminal shows
// ASCII alone, with stars; below it the figures in words. Pure: value in, text out.
#pragma once

#include <string>
#include <vector>

#include "insight/Trend.h"

namespace logbook::insight {

struct TerminalStyle {
  int width = 80;       // columns; less than 40 count as 40
  int height = 12;      // lines of the curve itself; less than 4 count as 4
  bool unicode = true;  // false: ASCII alone
  bool color = false;   // escape sequences for what stands out
};

// Title, curve, time axis and a line of letters for the maintenance marks. Lines end in a line feed
// and hold no more columns than the style's width. A series without a value gives its title and the
// sentence that there is none. Gaps interrupt the curve.
std::string TrendChart(const Trend& trend, const TerminalStyle& style);

// The figures: statistics, slope, control chart with the values its rules name, limits with the
// verdict on the last value, what changed at each mark.
std::string TrendFigures(const Trend& trend, const TerminalStyle& style);

}  // namespace logbook::insight
