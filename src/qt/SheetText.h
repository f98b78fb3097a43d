// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Texts of the sheet on a device: how wide they are, where pages cut them, and how they are
// painted. In a fixed-pitch font texts stand in cells as wide as a digit, and a character takes as
// many of them as it has bytes in the code page, whatever the width of its glyph: columns that were
// counted in bytes stay columns on paper. All lengths are in dots of the device.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPointF>
#include <QString>
#include <array>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "base/CodePage.h"
#include "printing/SheetPages.h"
#include "state/F1Report.h"

namespace logbook {

// A font of the sheet on a device.
class Typeface {
 public:
  Typeface(const CellFont& font, const CodePage& code_page, QPaintDevice& device);

  const CellFont& SheetFont() const { return sheet_font_; }
  const QFont& ToolkitFont() const { return font_; }
  const QFontMetricsF& Metrics() const { return metrics_; }
  // Width of a digit, which is that of a cell.
  double Character() const { return character_; }

  // True if the text stands in cells. A text with letters that run from right to left does not:
  // they join and change their order.
  bool InCells(const QString& text) const;

  // The width of a character (base and its marks) on the page, and that of its glyph alone.
  struct Widths {
    double place = 0, glyph = 0;
  };
  Widths WidthsOf(QStringView character, bool in_cells) const;

  // The width of a text that stands in cells or does not.
  double WidthOf(const QString& text, bool in_cells) const;
  // How many different characters have been measured so far; each is once.
  int Measured() const { return measured_; }

 private:
  Widths Measure(const QString& character) const;

  CellFont sheet_font_;
  const CodePage& code_page_;
  QFont font_;
  QFontMetricsF metrics_;
  double character_;
  bool fixed_pitch_;
  // What has been measured: `place` in cells.
  mutable std::array<std::optional<Widths>, 0x100> latin_;
  mutable QHash<QString, Widths> others_;
  mutable int measured_ = 0;
};

// The characters of a text that begin on a page, by UTF-16 units, and where the first of them
// begins, measured from the text's left edge. Empty: begin == end.
struct TextStrip {
  qsizetype begin = 0, end = 0;
  double left = 0;
};

using WidthOfCharacter = std::function<double(QStringView character)>;

// The strip of a text on each of these pages, the text's left edge being at `text_left` of the
// sheet. Asks for the width of each character once.
std::vector<TextStrip> CutAtBands(const QString& text, const WidthOfCharacter& width_of,
                                  double text_left, std::span<const ColumnBand> bands);

// Paints a text from this point of the baseline on, in the painter's pen. In cells, a glyph that is
// wider than its cells is squeezed into them and one that nearly fills them is widened, so that the
// text stays without gaps for those who search it; any other stands in their middle.
void DrawSheetText(QPainter& painter, const Typeface& typeface, QPointF at, const QString& text,
                   bool in_cells);

}  // namespace logbook
