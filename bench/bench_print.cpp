// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A report from the sheet to the finished PDF document.
//
//   bench_print pages LINES ROUNDS    samples of print.base (the same lines through a bare
//                                     QPdfWriter) and print.pages, in turn
//   bench_print line CHARACTERS       print.line: one line of so many characters, over
//                                     hundreds of pages

#include <QApplication>
#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "Samples.h"
#include "printing/SheetSettings.h"
#include "qt/SheetPrinting.h"
#include "state/F1Report.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

constexpr LocalTime kNow{2026, 11, 21, 5, 9, 59};
constexpr int kLinesOnAPage = 66;
constexpr qsizetype kLeastBytesALine = 10;  // of a document, whose pages are compressed
constexpr qsizetype kLeastPages = 100;      // of a line of 65,533 characters

std::string Line(int row) {
  return "11/15/2026 05:09:59  sample " + std::to_string(row) +
         "  acquired, 31 masses, 3 repetitions, no warnings";
}

qsizetype Print(const std::vector<std::string>& lines) {
  F1Book sheet;
  BeginSheet(sheet);
  sheet.SetSheetName("Acquisition Log");
  int row = 0;
  for (const std::string& line : lines) sheet.SetText(++row, 1, line);
  FinishSheet(sheet, false);
  return SheetAsPdf(sheet, kNow, QPageSize(QPageSize::A4), *CodePage::Find(1252)).size();
}

// The same text on paper with nothing around it.
qsizetype PrintBare(const std::vector<std::string>& lines) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setPageSize(QPageSize(QPageSize::A4));
  QPainter painter(&writer);
  painter.setFont(PrintFont({}));
  const int height = writer.height() / kLinesOnAPage;
  int row = 0;
  for (const std::string& line : lines) {
    if (row == kLinesOnAPage) writer.newPage();
    row = row % kLinesOnAPage + 1;
    painter.drawText(0, row * height, QString::fromStdString(line));
  }
  painter.end();
  return bytes.size();
}

void Pages(int count, int rounds) {
  std::vector<std::string> lines;
  for (int row = 1; row <= count; ++row) lines.push_back(Line(row));
  const qsizetype least = kLeastBytesALine * count;
  for (int round = 0; round < rounds; ++round) {
    qsizetype bare = 0, ours = 0;
    Measure("print.base", [&] { bare = PrintBare(lines); });
    Measure("print.pages", [&] { ours = Print(lines); });
    Expect(bare > least && ours > least, "all lines on paper");
  }
}

void LongLine(std::size_t characters) {
  qsizetype size = 0;
  Measure("print.line", [&] { size = Print({std::string(characters, 'x')}); });
  Expect(size > kLeastBytesALine * kLeastPages, "the line on paper");
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  if (argc == 4 && std::strcmp(argv[1], "pages") == 0) {
    Pages(std::atoi(argv[2]), std::atoi(argv[3]));
  } else if (argc == 3 && std::strcmp(argv[1], "line") == 0) {
    LongLine(static_cast<std::size_t>(std::atoi(argv[2])));
  } else {
    std::cerr << "usage: bench_print pages LINES ROUNDS | line CHARACTERS\n";
    return 2;
  }
  return 0;
}
