// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SheetText.h"

#include <QFontInfo>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <cmath>

#include "qt/SheetPrinting.h"

namespace logbook {

namespace {

// Of a dot: how far a character may begin off the edge of a page that it is counted to, and how far
// its glyph may be off the width of its cells.
constexpr double kHair = 0.5, kOffCells = 0.02;
// A glyph that lacks more than this of its cells is not widened.
constexpr double kMostWidening = 1.25;

bool IsLatin(QStringView text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; });
}

// Calls `visit` with each character of a text and its place, until that returns false.
template <typename Visit>
void ForEachCharacter(const QString& text, const Visit& visit) {
  const QStringView all(text);
  if (IsLatin(all)) {
    for (qsizetype at = 0; at < all.size(); ++at) {
      if (!visit(at, all.mid(at, 1))) return;
    }
    return;
  }
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype begin = 0;
  for (qsizetype end = finder.toNextBoundary(); end > begin; end = finder.toNextBoundary()) {
    if (!visit(begin, all.mid(begin, end - begin))) return;
    begin = end;
  }
}

// How much wider a glyph is painted than it is.
double StretchOf(const Typeface::Widths& widths) {
  if (widths.glyph <= 0) return 1;
  const bool fits = std::abs(widths.place - widths.glyph) < kOffCells;
  const double stretch = widths.place / widths.glyph;
  return fits || stretch > kMostWidening ? 1 : stretch;
}

// Neighbours that are painted together: widened alike, and each as wide as its place.
struct Run {
  qsizetype begin = 0, end = 0;
  double left = 0, stretch = 1;
  bool fills = true;
};

std::vector<Run> RunsOf(const Typeface& typeface, const QString& text) {
  std::vector<Run> runs;
  double left = 0;
  ForEachCharacter(text, [&](qsizetype at, QStringView character) {
    const Typeface::Widths widths = typeface.WidthsOf(character, true);
    const double stretch = StretchOf(widths);
    const double gap = widths.place - widths.glyph * stretch;
    const bool fills = std::abs(gap) < kOffCells;
    const bool joins = !runs.empty() && runs.back().fills && fills &&
                       std::abs(runs.back().stretch - stretch) < 1e-6;
    if (joins) {
      runs.back().end += character.size();
    } else {
      runs.push_back({at, at + character.size(), fills ? left : left + gap / 2, stretch, fills});
    }
    left += widths.place;
    return true;
  });
  return runs;
}

}  // namespace

Typeface::Typeface(const CellFont& font, const CodePage& code_page, QPaintDevice& device)
    : sheet_font_(font),
      code_page_(code_page),
      font_(PrintFont(font), &device),
      metrics_(font_, &device),
      character_(metrics_.horizontalAdvance(QLatin1Char('0'))),
      fixed_pitch_(QFontInfo(font_).fixedPitch()) {}

bool Typeface::InCells(const QString& text) const {
  if (!fixed_pitch_) return false;
  const QList<uint> points = IsLatin(text) ? QList<uint>() : text.toUcs4();
  return std::none_of(points.begin(), points.end(), [](uint point) {
    const QChar::Direction direction = QChar::direction(point);
    return direction == QChar::DirR || direction == QChar::DirAL;
  });
}

Typeface::Widths Typeface::Measure(const QString& character) const {
  ++measured_;
  const QByteArray utf8 = character.toUtf8();
  const std::size_t cells =
      code_page_.Length({utf8.constData(), static_cast<std::size_t>(utf8.size())});
  return {static_cast<double>(cells) * character_, metrics_.horizontalAdvance(character)};
}

Typeface::Widths Typeface::WidthsOf(QStringView character, bool in_cells) const {
  Widths widths;
  const bool latin = character.size() == 1 && character[0].unicode() < latin_.size();
  if (latin) {
    std::optional<Widths>& known = latin_[character[0].unicode()];
    if (!known) known = Measure(character.toString());
    widths = *known;
  } else {
    const QString key = character.toString();
    const auto known = others_.constFind(key);
    widths = known != others_.constEnd() ? *known : *others_.insert(key, Measure(key));
  }
  if (!in_cells) widths.place = widths.glyph;
  return widths;
}

double Typeface::WidthOf(const QString& text, bool in_cells) const {
  if (!in_cells) return metrics_.horizontalAdvance(text);
  double width = 0;
  ForEachCharacter(text, [&](qsizetype, QStringView character) {
    width += WidthsOf(character, true).place;
    return true;
  });
  return width;
}

std::vector<TextStrip> CutAtBands(const QString& text, const WidthOfCharacter& width_of,
                                  double text_left, std::span<const ColumnBand> bands) {
  std::vector<TextStrip> strips(bands.size());
  std::size_t band = 0;
  double left = text_left;
  ForEachCharacter(text, [&](qsizetype at, QStringView character) {
    while (band < bands.size() && left >= bands[band].Right - kHair) ++band;
    if (band == bands.size()) return false;
    TextStrip& strip = strips[band];
    if (left >= bands[band].Left - kHair) {
      if (strip.begin == strip.end) strip = {at, at, left - text_left};
      strip.end = at + character.size();
    }
    left += width_of(character);
    return true;
  });
  return strips;
}

void DrawSheetText(QPainter& painter, const Typeface& typeface, QPointF at, const QString& text,
                   bool in_cells) {
  painter.setFont(typeface.ToolkitFont());
  if (!in_cells) return painter.drawText(at, text);
  for (const Run& run : RunsOf(typeface, text)) {
    const QString piece = text.mid(run.begin, run.end - run.begin);
    if (run.stretch == 1) {
      painter.drawText(at + QPointF(run.left, 0), piece);
      continue;
    }
    painter.save();
    painter.translate(at + QPointF(run.left, 0));
    painter.scale(run.stretch, 1);
    painter.drawText(QPointF(0, 0), piece);
    painter.restore();
  }
}

}  // namespace logbook
