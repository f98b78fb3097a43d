// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One print of the sheet on one device: measures it, breaks it into pages and paints them. All
// lengths are in dots of the device.
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <deque>
#include <vector>

#include "printing/PageCodes.h"
#include "printing/SheetPages.h"
#include "state/F1Report.h"
#include "state/Services.h"

class QPagedPaintDevice;

namespace logbook {

class SheetPainter {
 public:
  // The device has its page layout already, in full-page mode.
  SheetPainter(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now);

  // Raises kPrinterError if the device does not take the job or a page.
  void Paint();

 private:
  // A font of the sheet on this device.
  struct Typeface {
    CellFont sheet_font;
    QFont font;
    QFontMetricsF metrics;
    double character;  // width of a digit
  };
  struct Cell {
    QString text;
    const Typeface* typeface;
    double width;
  };

  const Typeface& TypefaceOf(const CellFont& font);
  void Measure();
  void MeasureRow(int row);

  void PaintPage(const RowBand& rows, const ColumnBand& columns, int page, int pages);
  void PaintRow(int row, const ColumnBand& columns, double top);
  void PaintText(const Cell& cell, double cell_left, const ColumnBand& columns, double baseline);
  void PaintBorder(const CellBorder& border, const QRectF& place);
  void PaintEdge(const SheetEdge& edge, QPointF from, QPointF to);
  enum class Margin { kHeader, kFooter };
  void PaintMargin(Margin margin, const PageFacts& facts);
  void PaintRuns(const std::vector<PageRun>& runs, Qt::Alignment side, Margin margin);

  QPagedPaintDevice& device_;
  const F1Book& sheet_;
  const LocalTime now_;
  const double point_;  // dots to a point of 1/72 inch
  QRectF page_, body_;
  QPainter painter_;
  std::deque<Typeface> typefaces_;  // keeps its places as it grows
  int rows_, columns_;
  std::vector<std::vector<Cell>> cells_;  // by row and column, from 0
  std::vector<double> heights_, widths_;
};

}  // namespace logbook
