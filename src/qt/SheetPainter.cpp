// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SheetPainter.h"

#include <QPagedPaintDevice>
#include <algorithm>

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

}  // namespace

SheetPainter::SheetPainter(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now,
                           const CodePage& code_page)
    : device_(device),
      sheet_(sheet),
      now_(now),
      code_page_(code_page),
      point_(device.logicalDpiY() / 72.0),
      page_(device.pageLayout().fullRectPixels(device.logicalDpiY())),
      body_(page_.adjusted(kSideMargin * point_, kEndMargin * point_, -kSideMargin * point_,
                           -kEndMargin * point_)),
      rows_(sheet.LastRow()),
      columns_(sheet.LastColumn()) {}

const Typeface& SheetPainter::TypefaceOf(const CellFont& font) {
  const auto known = std::find_if(typefaces_.begin(), typefaces_.end(),
                                  [&](const Typeface& face) { return face.SheetFont() == font; });
  if (known != typefaces_.end()) return *known;
  return typefaces_.emplace_back(font, code_page_, device_);
}

void SheetPainter::Measure() {
  const double unfitted = kDefaultColumn * TypefaceOf(sheet_.DefaultFont()).Character();
  for (int column = 1; column <= columns_; ++column)
    widths_.push_back(sheet_.ColumnIsFitted(column) ? 0 : unfitted);
  cells_.reserve(static_cast<std::size_t>(rows_));
  for (int row = 1; row <= rows_; ++row) MeasureRow(row);
}

void SheetPainter::MeasureRow(int row) {
  std::vector<Cell> cells;
  double text_height = TypefaceOf(sheet_.FontOf(row, 1)).Metrics().lineSpacing();
  for (int column = 1; column <= columns_; ++column) {
    const Typeface& face = TypefaceOf(sheet_.FontOf(row, column));
    QString text = PrintableText(sheet_.Text(row, column), code_page_);
    const bool in_cells = face.InCells(text);
    const double width = face.WidthOf(text, in_cells);
    text_height = std::max(text_height, face.Metrics().lineSpacing());
    double& column_width = widths_[static_cast<std::size_t>(column - 1)];
    // One character keeps a column off its right neighbour.
    const double gap = column < columns_ ? face.Character() : 0;
    if (sheet_.ColumnIsFitted(column)) column_width = std::max(column_width, width + gap);
    cells.push_back({std::move(text), &face, in_cells, width});
  }
  cells_.push_back(std::move(cells));
  heights_.push_back(text_height + kRowLead * point_);
}

void SheetPainter::Paint(const std::function<void()>& between_pages) {
  Measure();
  const std::vector<RowBand> row_bands = BreakRows(heights_, body_.height());
  bands_ = BreakColumns(widths_, body_.width(), TypefaceOf(sheet_.FontOf(1, 1)).Character());
  struct Page {
    RowBand rows;
    std::size_t across;
  };
  std::vector<Page> pages;
  for (std::size_t across = 0; across < bands_.size(); ++across) {
    for (const RowBand& rows : row_bands)
      if (across == 0 || HasText(rows, across)) pages.push_back({rows, across});
  }

  if (!painter_.begin(&device_)) throw RunTimeError(ErrorNumber::kPrinterError);
  int number = 0;
  for (const Page& page : pages) {
    ++number;
    if (between_pages) between_pages();
    if (number > 1 && !device_.newPage()) throw RunTimeError(ErrorNumber::kPrinterError);
    PaintPage(page.rows, page.across, number, static_cast<int>(pages.size()));
  }
  if (!painter_.end()) throw RunTimeError(ErrorNumber::kPrinterError);
}

bool SheetPainter::HasText(const RowBand& rows, std::size_t across) {
  const ColumnBand& columns = bands_[across];
  for (int row = rows.Begin; row < rows.End; ++row) {
    double left = 0;  // on the sheet
    auto& cells = cells_[static_cast<std::size_t>(row)];
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const double right = left + widths_[i];
      if (right > columns.Left && left < columns.Right) {
        const TextStrip strip = StripOn(cells[i], left, across);
        const QStringView text =
            QStringView(cells[i].text).mid(strip.begin, strip.end - strip.begin);
        if (!text.trimmed().isEmpty()) return true;
      }
      left = right;
    }
  }
  return false;
}

void SheetPainter::PaintPage(const RowBand& rows, std::size_t across, int page, int pages) {
  const PageFacts facts{sheet_.SheetName(), page, pages, PrintDate(now_).toStdString(),
                        PrintTime(now_).toStdString()};
  PaintMargin(Margin::kHeader, facts);
  double top = body_.top();
  for (int row = rows.Begin; row < rows.End; ++row) {
    PaintRow(row, across, top);
    top += heights_[static_cast<std::size_t>(row)];
  }
  PaintMargin(Margin::kFooter, facts);
}

void SheetPainter::PaintRow(int row, std::size_t across, double top) {
  const ColumnBand& columns = bands_[across];
  auto& cells = cells_[static_cast<std::size_t>(row)];
  const double height = heights_[static_cast<std::size_t>(row)];
  double ascent = 0;
  for (const Cell& cell : cells) ascent = std::max(ascent, cell.typeface->Metrics().ascent());

  double left = 0;  // on the sheet
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const double right = left + widths_[i];
    if (right > columns.Left && left < columns.Right) {
      PaintText(cells[i], left, across, top + kRowLead * point_ + ascent);
      const double first = std::max(left, columns.Left) - columns.Left;
      const double last = std::min(right, columns.Right) - columns.Left;
      PaintBorder(sheet_.Border(row + 1, static_cast<int>(i) + 1),
                  QRectF(body_.left() + first, top, last - first, height));
    }
    left = right;
  }
}

void SheetPainter::PaintText(Cell& cell, double cell_left, std::size_t across, double baseline) {
  if (cell.text.isEmpty()) return;
  const ColumnBand& columns = bands_[across];
  const TextStrip strip = StripOn(cell, cell_left, across);
  if (strip.begin == strip.end) return;
  painter_.setPen(ColourOf(cell.typeface->SheetFont().Colour));
  DrawSheetText(painter_, *cell.typeface,
                QPointF(body_.left() + cell_left + strip.left - columns.Left, baseline),
                cell.text.mid(strip.begin, strip.end - strip.begin), cell.in_cells);
}

TextStrip SheetPainter::StripOn(Cell& cell, double cell_left, std::size_t across) {
  const ColumnBand& columns = bands_[across];
  const bool whole = cell_left >= columns.Left && cell_left + cell.width <= columns.Right + 1;
  return whole ? TextStrip{0, cell.text.size(), 0} : StripOf(cell, cell_left, across);
}

TextStrip SheetPainter::StripOf(Cell& cell, double cell_left, std::size_t across) {
  if (cell.strips.empty()) {
    const auto width_of = [&](QStringView character) {
      ++placed_;
      return cell.typeface->WidthsOf(character, cell.in_cells).place;
    };
    cell.strips = CutAtBands(cell.text, width_of, cell_left, bands_);
  }
  return cell.strips[across];
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
    QString text = PrintableText(run.Text, code_page_);
    const bool in_cells = face.InCells(text);
    const double piece_width = face.WidthOf(text, in_cells);
    pieces.push_back({std::move(text), &face, in_cells, piece_width});
    width += piece_width;
    ascent = std::max(ascent, face.Metrics().ascent());
    descent = std::max(descent, face.Metrics().descent());
  }
  double left = body_.left();
  if (side == Qt::AlignHCenter) left = body_.center().x() - width / 2;
  if (side == Qt::AlignRight) left = body_.right() - width;
  const double baseline = margin == Margin::kHeader
                              ? page_.top() + kHeaderMargin * point_ + ascent
                              : page_.bottom() - kHeaderMargin * point_ - descent;
  for (const Cell& piece : pieces) {
    painter_.setPen(ColourOf(piece.typeface->SheetFont().Colour));
    DrawSheetText(painter_, *piece.typeface, QPointF(left, baseline), piece.text, piece.in_cells);
    left += piece.width;
  }
}

}  // namespace logbook
