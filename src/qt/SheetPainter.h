// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One print of the sheet on one device: measures it, breaks it into pages and paints them. All
// lengths are in dots of the device.
#pragma once

#include <QPainter>
#include <QRectF>
#include <QString>
#include <cstddef>
#include <deque>
#include <functional>
#include <vector>

#include "base/CodePage.h"
#include "printing/PageCodes.h"
#include "printing/SheetPages.h"
#include "qt/SheetText.h"
#include "state/F1Report.h"
#include "state/Services.h"

class QPagedPaintDevice;

namespace logbook {

class SheetPainter {
 public:
  // The device has its page layout already, in full-page mode.
  SheetPainter(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now,
               const CodePage& code_page);

  // Runs `between_pages`, if there is one, before each page. Raises kPrinterError if the device
  // does not take the job or a page.
  void Paint(const std::function<void()>& between_pages = {});

  // For how many characters of texts that pages cut a place has been found so far. Each is placed
  // once, however many pages its text goes over.
  long Placed() const { return placed_; }

 private:
  struct Cell {
    QString text;
    const Typeface* typeface = nullptr;
    bool in_cells = true;
    double width = 0;
    std::vector<TextStrip> strips{};  // by page across; made when a page cuts the text
  };

  const Typeface& TypefaceOf(const CellFont& font);
  void Measure();
  void MeasureRow(int row);

  // `across` is the number of the page across, from 0.
  bool HasText(const RowBand& rows, std::size_t across);
  void PaintPage(const RowBand& rows, std::size_t across, int page, int pages);
  void PaintRow(int row, std::size_t across, double top);
  void PaintText(Cell& cell, double cell_left, std::size_t across, double baseline);
  // What of a cell's text stands on the page; the cell's column reaches there.
  TextStrip StripOn(Cell& cell, double cell_left, std::size_t across);
  TextStrip StripOf(Cell& cell, double cell_left, std::size_t across);
  void PaintBorder(const CellBorder& border, const QRectF& place);
  void PaintEdge(const SheetEdge& edge, QPointF from, QPointF to);
  enum class Margin { kHeader, kFooter };
  void PaintMargin(Margin margin, const PageFacts& facts);
  void PaintRuns(const std::vector<PageRun>& runs, Qt::Alignment side, Margin margin);

  QPagedPaintDevice& device_;
  const F1Book& sheet_;
  const LocalTime now_;
  const CodePage& code_page_;
  const double point_;  // dots to a point of 1/72 inch
  QRectF page_, body_;
  QPainter painter_;
  std::deque<Typeface> typefaces_;  // keeps its places as it grows
  int rows_, columns_;
  std::vector<std::vector<Cell>> cells_;  // by row and column, from 0
  std::vector<double> heights_, widths_;
  std::vector<ColumnBand> bands_;
  long placed_ = 0;
};

}  // namespace logbook
