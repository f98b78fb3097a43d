// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/SheetPages.h"

#include <algorithm>
#include <cmath>

namespace logbook {

namespace {

// Widths are sums of rounded numbers; a hair too much is not too much.
constexpr double kTolerance = 1e-6;

}  // namespace

std::vector<RowBand> BreakRows(std::span<const double> heights, double page_height) {
  std::vector<RowBand> bands(1);
  double filled = 0;
  for (int row = 0; row < static_cast<int>(heights.size()); ++row) {
    const double height = heights[static_cast<std::size_t>(row)];
    if (row > bands.back().Begin && filled + height > page_height * (1 + kTolerance)) {
      bands.push_back({row, row});
      filled = 0;
    }
    bands.back().End = row + 1;
    filled += height;
  }
  return bands;
}

std::vector<ColumnBand> BreakColumns(std::span<const double> widths, double page_width,
                                     double grain) {
  const double limit = page_width * (1 + kTolerance);
  const double characters = std::max(1.0, std::floor(limit / grain));
  std::vector<ColumnBand> bands;
  ColumnBand band;
  for (const double width : widths) {
    const double right = band.Right + width;
    if (right - band.Left > limit && band.Right > band.Left) {
      bands.push_back(band);
      band.Left = band.Right;
    }
    const bool too_wide = width > limit;
    while (right - band.Left > limit) {
      bands.push_back({band.Left, band.Left + characters * grain});
      band.Left = bands.back().Right;
    }
    band.Right = right;
    if (too_wide) {
      bands.push_back(band);
      band.Left = band.Right;
    }
  }
  if (bands.empty() || band.Right > band.Left) bands.push_back(band);
  return bands;
}

}  // namespace logbook
