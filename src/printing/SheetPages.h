// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How a sheet falls into pages: by rows, and by columns where these are wider together than a
// page. Lengths are in any one unit, the device's.
#pragma once

#include <span>
#include <vector>

namespace logbook {

// Rows on one page, counted from 0, `End` not included.
struct RowBand {
  int Begin = 0, End = 0;
  bool operator==(const RowBand&) const = default;
};

// The strip of the sheet that lies on one page, from the left edge of the sheet.
struct ColumnBand {
  double Left = 0, Right = 0;
  bool operator==(const ColumnBand&) const = default;
};

// As many rows to a page as fit, at least one. Never empty: no rows give one empty band.
std::vector<RowBand> BreakRows(std::span<const double> heights, double page_height);

// As many whole columns to a page as fit. A column wider than a page is cut into strips that are
// whole numbers of `grain`, the width of a character, so that no character is cut; what is left of
// it shares its page with no other column. Never empty.
std::vector<ColumnBand> BreakColumns(std::span<const double> widths, double page_width,
                                     double grain);

}  // namespace logbook
