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

constexpr int kTabStop = 8;
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

QString PrintableText(const std::string& text) {
  const QString raw = ToQt(text);
  const bool plain =
      std::all_of(raw.begin(), raw.end(), [](QChar c) { return c.unicode() >= 0x20; });
  if (plain) return raw;
  QString printable;
  for (const QChar c : raw) {
    if (c == QLatin1Char('\t')) {
      printable += QString(kTabStop - printable.size() % kTabStop, QLatin1Char(' '));
    } else if (c.unicode() >= 0x20) {
      printable += c;
    }
  }
  return printable;
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

void PaintSheet(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now) {
  QPageLayout layout = device.pageLayout();
  layout.setMode(QPageLayout::FullPageMode);
  layout.setOrientation(sheet.Landscape() ? QPageLayout::Landscape : QPageLayout::Portrait);
  device.setPageLayout(layout);
  SheetPainter(device, sheet, now).Paint();
}

QPageSize PaperOfTheLocale() {
  const bool metric = QLocale::system().measurementSystem() == QLocale::MetricSystem;
  return QPageSize(metric ? QPageSize::A4 : QPageSize::Letter);
}

QByteArray SheetAsPdf(const F1Book& sheet, const LocalTime& now, const QPageSize& paper) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(kPdfResolution);
  writer.setPageSize(paper);
  writer.setTitle(ToQt(sheet.Title()));
  writer.setCreator(ToQt(sheet.Title()));
  PaintSheet(writer, sheet, now);
  return bytes;
}

}  // namespace logbook
