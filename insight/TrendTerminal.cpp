// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendTerminal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "insight/VisibleText.h"

namespace logbook::insight {
namespace {

constexpr int kLeastWidth = 40;
constexpr int kLeastHeight = 4;
constexpr int kNameWidth = 6;  // of the level lines' names at the right, with the blank before

constexpr std::string_view kRed = "\x1B[1;31m";
constexpr std::string_view kPlain = "\x1B[0m";

// A field of character cells, each of some dots: two by four with Braille, one with ASCII.
class Canvas {
 public:
  Canvas(int columns, int rows, const TerminalStyle& style)
      : columns_(columns), rows_(rows), style_(style), cells_(Cells(columns * rows)) {}

  int DotsAcross() const { return columns_ * (style_.unicode ? 2 : 1); }
  int DotsDown() const { return rows_ * DotsInCell(); }
  int DotsInCell() const { return style_.unicode ? 4 : 1; }

  // Dots and rows count from 0 at the top left.
  void Dot(int x, int y) {
    constexpr std::uint8_t kBits[4][2] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    if (x < 0 || y < 0 || x >= DotsAcross() || y >= DotsDown()) return;
    At(style_.unicode ? x / 2 : x, y / DotsInCell()).dots |=
        style_.unicode ? kBits[y % 4][x % 2] : 1;
  }

  void Line(int x0, int y0, int x1, int y1) {
    const int steps = std::max({std::abs(x1 - x0), std::abs(y1 - y0), 1});
    for (int i = 0; i <= steps; ++i) {
      const double share = static_cast<double>(i) / steps;
      Dot(static_cast<int>(std::lround(x0 + share * (x1 - x0))),
          static_cast<int>(std::lround(y0 + share * (y1 - y0))));
    }
  }

  // A character in place of a cell's dots.
  void Put(int column, int row, std::string_view glyph, bool red = false) {
    if (column < 0 || row < 0 || column >= columns_ || row >= rows_) return;
    At(column, row).glyph = glyph;
    At(column, row).red = red;
  }

  // A character that stands only where nothing else is.
  void PutBehind(int column, int row, std::string_view glyph) { At(column, row).behind = glyph; }

  std::string Row(int row) const {
    std::string text;
    for (int column = 0; column < columns_; ++column) {
      const Cell& cell = cells_[Place(column, row)];
      if (cell.red && style_.color) text += kRed;
      text += Glyph(cell);
      if (cell.red && style_.color) text += kPlain;
    }
    return text;
  }

 private:
  struct Cell {
    std::uint8_t dots = 0;
    std::string_view glyph;
    std::string_view behind;
    bool red = false;
  };
  using Cells = std::vector<Cell>;

  std::size_t Place(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }

  Cell& At(int column, int row) { return cells_[Place(column, row)]; }

  // Braille patterns begin at U+2800, in UTF-8 E2 A0 80.
  std::string Glyph(const Cell& cell) const {
    if (!cell.glyph.empty()) return std::string(cell.glyph);
    if (cell.dots == 0) return cell.behind.empty() ? " " : std::string(cell.behind);
    if (!style_.unicode) return ".";
    return {'\xE2', static_cast<char>(0xA0 + cell.dots / 64),
            static_cast<char>(0x80 + cell.dots % 64)};
  }

  int columns_;
  int rows_;
  TerminalStyle style_;
  std::vector<Cell> cells_;
};

// The words beside a level line, and the character that it is drawn with.
struct LevelStyle {
  std::string_view name;
  std::string_view unicode;
  std::string_view ascii;
};

LevelStyle StyleOf(LevelLine::Kind kind) {
  switch (kind) {
    case LevelLine::Kind::kMean:
      return {"mean", "─", "-"};
    case LevelLine::Kind::kControl:
      return {"limit", "┄", "="};
    case LevelLine::Kind::kReference:
      return {"ref", "─", "-"};
    case LevelLine::Kind::kTolerance:
      return {"tol", "╌", "~"};
    case LevelLine::Kind::kAction:
      return {"act", "╍", "~"};
  }
  return {};
}

// Writes a text into a line of blanks from a column on, unless it would touch another or leave the
// line.
bool Place(std::string& line, int column, std::string_view text) {
  const int from = std::max(0, column);
  const auto first = static_cast<std::size_t>(from);
  if (first + text.size() > line.size()) return false;
  const std::size_t guard = first == 0 ? 0 : first - 1;
  const std::size_t length = std::min(line.size(), first + text.size() + 1) - guard;
  if (line.substr(guard, length).find_first_not_of(' ') != std::string::npos) return false;
  line.replace(first, text.size(), text);
  return true;
}

class Chart {
 public:
  Chart(const Trend& trend, const TerminalStyle& style)
      : trend_(trend),
        style_(style),
        rows_(std::max(style.height, kLeastHeight)),
        values_(ValueAxisOf(trend, std::max(2, rows_ / 3))),
        label_width_(LabelWidth()),
        columns_(std::max(style.width, kLeastWidth) - label_width_ - 2 - kNameWidth),
        times_(TimeAxisOf({trend}, std::max(2, columns_ / 14))),
        canvas_(columns_, rows_, style),
        names_(static_cast<std::size_t>(rows_)) {}

  std::string Draw() {
    DrawLevels();
    DrawCurve();
    DrawHits();
    std::string text;
    for (int row = 0; row < rows_; ++row) text += LineOf(row);
    return text + TimeLine() + MarkLine();
  }

 private:
  int LabelWidth() const {
    std::size_t width = 1;
    for (const Tick& tick : values_.ticks) width = std::max(width, tick.label.size());
    return static_cast<int>(width);
  }

  int DotX(double day) const {
    return static_cast<int>(std::lround(times_.Share(day) * (canvas_.DotsAcross() - 1)));
  }
  int DotY(double value) const {
    return static_cast<int>(std::lround((1 - values_.Share(value)) * (canvas_.DotsDown() - 1)));
  }
  int ColumnOf(double day) const { return DotX(day) / (style_.unicode ? 2 : 1); }
  int RowOf(double value) const { return DotY(value) / canvas_.DotsInCell(); }

  void DrawLevels() {
    for (const LevelLine& line : LevelLinesOf(trend_)) {
      const LevelStyle look = StyleOf(line.kind);
      const int row = RowOf(line.value);
      std::string& name = names_[static_cast<std::size_t>(row)];
      if (name.empty()) name = look.name;
      for (int column = 0; column < columns_; ++column) {
        canvas_.PutBehind(column, row, style_.unicode ? look.unicode : look.ascii);
      }
    }
  }

  void DrawCurve() {
    const SeriesPoint* before = nullptr;
    for (const SeriesPoint& point : trend_.series.points) {
      if (point.value) {
        const SeriesPoint& from = before != nullptr ? *before : point;
        canvas_.Line(DotX(DaysOf(from.when)), DotY(*from.value), DotX(DaysOf(point.when)),
                     DotY(*point.value));
        if (!style_.unicode) Star(point, "*", false);
      }
      before = point.value ? &point : nullptr;
    }
  }

  void DrawHits() {
    if (!trend_.control) return;
    for (const RuleHit& hit : trend_.control->hits) {
      Star(trend_.series.points[trend_.value_points[hit.value]], style_.unicode ? "●" : "#", true);
    }
  }

  void Star(const SeriesPoint& point, std::string_view glyph, bool red) {
    canvas_.Put(ColumnOf(DaysOf(point.when)), RowOf(*point.value), glyph, red);
  }

  std::string LineOf(int row) const {
    std::string label;
    for (const Tick& tick : values_.ticks) {
      if (RowOf(tick.place) == row) label = tick.label;
    }
    std::string text(static_cast<std::size_t>(label_width_) - label.size(), ' ');
    text += label + (style_.unicode ? (label.empty() ? " │" : " ┤") : " |") + canvas_.Row(row);
    const std::string& name = names_[static_cast<std::size_t>(row)];
    if (!name.empty()) text += ' ' + name;
    const std::size_t last = text.find_last_not_of(' ');
    return text.substr(0, last + 1) + '\n';
  }

  std::string Indented(std::string line) const {
    line.insert(0, static_cast<std::size_t>(label_width_) + 2, ' ');
    return line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }

  std::string TimeLine() const {
    std::string line(static_cast<std::size_t>(columns_ + kNameWidth), ' ');
    for (const Tick& tick : times_.ticks) {
      Place(line, ColumnOf(tick.place) - static_cast<int>(tick.label.size()) / 2, tick.label);
    }
    return Indented(line);
  }

  std::string MarkLine() const {
    if (trend_.series.marks.empty()) return {};
    std::string line(static_cast<std::size_t>(columns_), ' ');
    for (std::size_t i = 0; i < trend_.series.marks.size(); ++i) {
      const auto column = static_cast<std::size_t>(ColumnOf(DaysOf(trend_.series.marks[i].when)));
      const std::string letter = MarkLetter(i);
      const bool free = line.substr(column, letter.size()) == std::string(letter.size(), ' ');
      if (free && (column == 0 || line[column - 1] == ' ')) {
        line.replace(column, letter.size(), letter);
      } else {
        line[column] = '+';
      }
    }
    return Indented(line);
  }

  const Trend& trend_;
  const TerminalStyle& style_;
  int rows_;
  Axis values_;
  int label_width_;
  int columns_;
  Axis times_;
  Canvas canvas_;
  std::vector<std::string> names_;
};

}  // namespace

std::string TrendChart(const Trend& trend, const TerminalStyle& style) {
  const std::string title = VisibleName(TitleOf(trend.series)) + '\n';
  if (trend.value_points.empty()) return title + "no value\n";
  return title + Chart(trend, style).Draw();
}

}  // namespace logbook::insight
