// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SheetPrinting.h"

#include <QBuffer>
#include <QDate>
#include <QFontDatabase>
#include <QPagedPaintDevice>
#include <QPdfWriter>
#include <QTime>
#include <algorithm>

#include "base/RunTimeError.h"
#include "qt/SheetPainter.h"
#include "qt/Widgets.h"

namespace logbook {

namespace {

constexpr std::size_t kTabStop = 8;
constexpr int kPdfResolution = 1200;

bool CanBeEmbedded(const QString& family) {
  return QFontDatabase::hasFamily(family) && QFontDatabase::isSmoothlyScalable(family);
}

}  // namespace

QFont PrintFont(const CellFont& font) {
  const QString name = ToQt(font.Name);
  QStringList families;
  if (CanBeEmbedded(name)) families << name;
  const bool fixed = name.startsWith(QLatin1String("Courier"), Qt::CaseInsensitive) ||
                     name.startsWith(QLatin1String("Fixedsys"), Qt::CaseInsensitive);
  if (fixed) {
    families << QStringLiteral("Liberation Mono") << QStringLiteral("Nimbus Mono PS")
             << QStringLiteral("DejaVu Sans Mono") << QStringLiteral("monospace");
  } else {
    families << QStringLiteral("Liberation Sans") << QStringLiteral("Nimbus Sans")
             << QStringLiteral("DejaVu Sans") << QStringLiteral("sans-serif");
  }
  QFont result;
  result.setFamilies(families);
  result.setStyleHint(fixed ? QFont::TypeWriter : QFont::SansSerif);
  result.setFixedPitch(fixed);
  result.setPointSizeF(font.Size > 0 ? font.Size : 9);
  result.setBold(font.Bold);
  result.setItalic(font.Italic);
  result.setUnderline(font.Underlined);
  result.setStrikeOut(font.StruckOut);
  result.setKerning(false);
  result.setHintingPreference(QFont::PreferNoHinting);
  return result;
}

QString PrintableText(const std::string& text, const CodePage& code_page) {
  const auto prints = [](char c) { return static_cast<unsigned char>(c) >= 0x20; };
  std::string printable;
  std::size_t column = 0;
  for (auto at = text.begin(); at != text.end();) {
    const auto end = std::find_if_not(at, text.end(), prints);
    const std::string_view piece(at, end);
    printable += piece;
    if (end == text.end()) break;
    column += code_page.Length(piece);
    if (*end == '\t') {
      const std::size_t blanks = kTabStop - column % kTabStop;
      printable.append(blanks, ' ');
      column += blanks;
    }
    at = end + 1;
  }
  return ToQt(printable);
}

QString PrintDate(const LocalTime& now, const QLocale& locale) {
  QString format = locale.dateFormat(QLocale::ShortFormat);
  if (!format.contains(QLatin1String("yyyy")))
    format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  return locale.toString(QDate(now.Year, now.Month, now.Day), format);
}

QString PrintTime(const LocalTime& now, const QLocale& locale) {
  return locale.toString(QTime(now.Hour, now.Minute, now.Second), QLocale::ShortFormat);
}

void PaintSheet(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now,
                const CodePage& code_page, const std::function<void()>& between_pages) {
  QPageLayout layout = device.pageLayout();
  layout.setMode(QPageLayout::FullPageMode);
  layout.setOrientation(sheet.Landscape() ? QPageLayout::Landscape : QPageLayout::Portrait);
  device.setPageLayout(layout);
  SheetPainter(device, sheet, now, code_page).Paint(between_pages);
}

QPageSize PaperOfTheLocale() {
  const bool metric = QLocale::system().measurementSystem() == QLocale::MetricSystem;
  return QPageSize(metric ? QPageSize::A4 : QPageSize::Letter);
}

QByteArray SheetAsPdf(const F1Book& sheet, const LocalTime& now, const QPageSize& paper,
                      const CodePage& code_page, const std::function<void()>& between_pages) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kPdfResolution);
  writer.setPageSize(paper);
  writer.setTitle(ToQt(sheet.Title()));
  writer.setCreator(ToQt(sheet.Title()));
  PaintSheet(writer, sheet, now, code_page, between_pages);
  return bytes;
}

}  // namespace logbook
