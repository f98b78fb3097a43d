// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SheetPainter.h"

#include <QPagedPaintDevice>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "base/RunTimeError.h"
#include "qt/SheetPrinting.h"
#include "qt/Widgets.h"

namespace logbook {

namespace {

// In points of 1/72 inch.
constexpr double kSideMargin = 54, kEndMargin = 72, kHeaderMargin = 36;
constexpr double kThinLine = 0.25, kRule = 0.75;
constexpr int kRuleStyle = 4;
// Space above the text of a row, which keeps it off a rule there.
constexpr double kRowLead = 1.5;
// Characters of a column that is not fitted.
constexpr int kDefaultColumn = 9;

QColor ColourOf(std::uint32_t colour) {
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                static_cast<int>(colour >> 16 & 0xFF));
}

// The characters of a text that begin between two places, measured from its left edge, and where
// the first of them begins.
struct Strip {
  QString text;
  double left = 0;
};

Strip CutStrip(const QString& text, const QFont& font, QPaintDevice* device, double from,
               double to) {
  QTextLayout layout(text, font, device);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  constexpr double kHair = 0.5;  // of a dot: rounding
  int begin = -1;
  double left = 0;
  int end = static_cast<int>(text.size());
  for (qsizetype at = 0; at >= 0 && at < text.size(); at = finder.toNextBoundary()) {
    const double x = line.cursorToX(static_cast<int>(at));
    if (begin < 0 && x >= from - kHair) {
      begin = static_cast<int>(at);
      left = x;
    }
    if (x >= to - kHair) {
      end = static_cast<int>(at);
      break;
    }
  }
  if (begin < 0 || begin >= end) return {};
  return {text.mid(begin, end - begin), left};
}

}  // namespace

SheetPainter::SheetPainter(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now)
    : device_(device),
      sheet_(sheet),
      now_(now),
      point_(device.logicalDpiY() / 72.0),
      page_(device.pageLayout().fullRectPixels(device.logicalDpiY())),
      body_(page_.adjusted(kSideMargin * point_, kEndMargin * point_, -kSideMargin * point_,
                           -kEndMargin * point_)),
      rows_(sheet.LastRow()),
      columns_(sheet.LastColumn()) {}

const SheetPainter::Typeface& SheetPainter::TypefaceOf(const CellFont& font) {
  const auto known = std::find_if(typefaces_.begin(), typefaces_.end(),
                                  [&](const Typeface& face) { return face.sheet_font == font; });
  if (known != typefaces_.end()) return *known;
  const QFont toolkit_font(PrintFont(font), &device_);
  const QFontMetricsF metrics(toolkit_font, &device_);
  typefaces_.push_back({font, toolkit_font, metrics, metrics.horizontalAdvance(QLatin1Char('0'))});
  return typefaces_.back();
}

void SheetPainter::Measure() {
  const double unfitted = kDefaultColumn * TypefaceOf(sheet_.DefaultFont()).character;
  for (int column = 1; column <= columns_; ++column)
    widths_.push_back(sheet_.ColumnIsFitted(column) ? 0 : unfitted);
  cells_.reserve(static_cast<std::size_t>(rows_));
  for (int row = 1; row <= rows_; ++row) MeasureRow(row);
}

void SheetPainter::MeasureRow(int row) {
  std::vector<Cell> cells;
  double text_height = TypefaceOf(sheet_.FontOf(row, 1)).metrics.lineSpacing();
  for (int column = 1; column <= columns_; ++column) {
    const Typeface& face = TypefaceOf(sheet_.FontOf(row, column));
    QString text = PrintableText(sheet_.Text(row, column));
    const double width = face.metrics.horizontalAdvance(text);
    text_height = std::max(text_height, face.metrics.lineSpacing());
    double& column_width = widths_[static_cast<std::size_t>(column - 1)];
    // One character keeps a column off its right neighbour.
    const double gap = column < columns_ ? face.character : 0;
    if (sheet_.ColumnIsFitted(column)) column_width = std::max(column_width, width + gap);
    cells.push_back({std::move(text), &face, width});
  }
  cells_.push_back(std::move(cells));
  heights_.push_back(text_height + kRowLead * point_);
}

void SheetPainter::Paint() {
  Measure();
  const std::vector<RowBand> row_bands = BreakRows(heights_, body_.height());
  const std::vector<ColumnBand> column_bands =
      BreakColumns(widths_, body_.width(), TypefaceOf(sheet_.FontOf(1, 1)).character);
  const int pages = static_cast<int>(row_bands.size() * column_bands.size());

  if (!painter_.begin(&device_)) throw RunTimeError(ErrorNumber::kPrinterError);
  int page = 0;
  for (const ColumnBand& columns : column_bands) {
    for (const RowBand& rows : row_bands) {
      ++page;
      if (page > 1 && !device_.newPage()) throw RunTimeError(ErrorNumber::kPrinterError);
      PaintPage(rows, columns, page, pages);
    }
  }
  if (!painter_.end()) throw RunTimeError(ErrorNumber::kPrinterError);
}

void SheetPainter::PaintPage(const RowBand& rows, const ColumnBand& columns, int page, int pages) {
  const PageFacts facts{sheet_.SheetName(), page, pages, PrintDate(now_).toStdString(),
                        PrintTime(now_).toStdString()};
  PaintMargin(Margin::kHeader, facts);
  double top = body_.top();
  for (int row = rows.Begin; row < rows.End; ++row) {
    PaintRow(row, columns, top);
    top += heights_[static_cast<std::size_t>(row)];
  }
  PaintMargin(Margin::kFooter, facts);
}

void SheetPainter::PaintRow(int row, const ColumnBand& columns, double top) {
  const auto& cells = cells_[static_cast<std::size_t>(row)];
  const double height = heights_[static_cast<std::size_t>(row)];
  double ascent = 0;
  for (const Cell& cell : cells) ascent = std::max(ascent, cell.typeface->metrics.ascent());

  double left = 0;  // on the sheet
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const double right = left + widths_[i];
    if (right > columns.Left && left < columns.Right) {
      PaintText(cells[i], left, columns, top + kRowLead * point_ + ascent);
      const double first = std::max(left, columns.Left) - columns.Left;
      const double last = std::min(right, columns.Right) - columns.Left;
      PaintBorder(sheet_.Border(row + 1, static_cast<int>(i) + 1),
                  QRectF(body_.left() + first, top, last - first, height));
    }
    left = right;
  }
}

void SheetPainter::PaintText(const Cell& cell, double cell_left, const ColumnBand& columns,
                             double baseline) {
  if (cell.text.isEmpty()) return;
  const bool whole = cell_left >= columns.Left && cell_left + cell.width <= columns.Right + 1;
  Strip strip{cell.text, 0};
  if (!whole) {
    strip = CutStrip(cell.text, cell.typeface->font, &device_, columns.Left - cell_left,
                     columns.Right - cell_left);
  }
  painter_.setFont(cell.typeface->font);
  painter_.setPen(ColourOf(cell.typeface->sheet_font.Colour));
  painter_.drawText(QPointF(body_.left() + cell_left + strip.left - columns.Left, baseline),
                    strip.text);
}

void SheetPainter::PaintBorder(const CellBorder& border, const QRectF& place) {
  PaintEdge(border.Top, place.topLeft(), place.topRight());
  PaintEdge(border.Bottom, place.bottomLeft(), place.bottomRight());
  PaintEdge(border.Left, place.topLeft(), place.bottomLeft());
  PaintEdge(border.Right, place.topRight(), place.bottomRight());
}

void SheetPainter::PaintEdge(const SheetEdge& edge, QPointF from, QPointF to) {
  if (edge.Style <= 0) return;
  const double width = edge.Style >= kRuleStyle ? kRule : edge.Style * kThinLine;
  painter_.setPen(QPen(ColourOf(edge.Colour), width * point_, Qt::SolidLine, Qt::FlatCap));
  painter_.drawLine(from, to);
}

void SheetPainter::PaintMargin(Margin margin, const PageFacts& facts) {
  const bool header = margin == Margin::kHeader;
  const PageText text = ExpandPageCodes(header ? sheet_.PageHeader() : sheet_.PageFooter(), facts);
  PaintRuns(text.Left, Qt::AlignLeft, margin);
  PaintRuns(text.Centre, Qt::AlignHCenter, margin);
  PaintRuns(text.Right, Qt::AlignRight, margin);
}

void SheetPainter::PaintRuns(const std::vector<PageRun>& runs, Qt::Alignment side, Margin margin) {
  double width = 0, ascent = 0, descent = 0;
  std::vector<Cell> pieces;
  for (const PageRun& run : runs) {
    CellFont font = sheet_.DefaultFont();
    if (run.FontName) font.Name = *run.FontName;
    if (run.FontSize) font.Size = *run.FontSize;
    const Typeface& face = TypefaceOf(font);
    QString text = PrintableText(run.Text);
    const double piece_width = face.metrics.horizontalAdvance(text);
    pieces.push_back({std::move(text), &face, piece_width});
    width += piece_width;
    ascent = std::max(ascent, face.metrics.ascent());
    descent = std::max(descent, face.metrics.descent());
  }
  double left = body_.left();
  if (side == Qt::AlignHCenter) left = body_.center().x() - width / 2;
  if (side == Qt::AlignRight) left = body_.right() - width;
  const double baseline = margin == Margin::kHeader
                              ? page_.top() + kHeaderMargin * point_ + ascent
                              : page_.bottom() - kHeaderMargin * point_ - descent;
  for (const Cell& piece : pieces) {
    painter_.setFont(piece.typeface->font);
    painter_.setPen(ColourOf(piece.typeface->sheet_font.Colour));
    painter_.drawText(QPointF(left, baseline), piece.text);
    left += piece.width;
  }
}

}  // namespace logbook
