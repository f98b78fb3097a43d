// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <algorithm>

#include "insight/TrendTerminal.h"
#include "insight/VisibleText.h"

namespace logbook::insight {
namespace {

// Lines of a name in a column of its own and a text behind it.
class Lines {
 public:
  void Add(std::string_view name, const std::string& text) {
    constexpr std::size_t kNameWidth = 10;
    text_.append(name).append(kNameWidth - std::min(kNameWidth - 1, name.size()), ' ');
    text_.append(text).append("\n");
  }
  std::string Text() && { return std::move(text_); }

 private:
  std::string text_;
};

constexpr int kSlopeDigits = 3;
constexpr int kPercentDigits = 3;

std::string Number(double value) {
  constexpr int kDigits = 5;
  return ShortNumber(value, kDigits);
}

std::string Counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count).append(" ").append(count == 1 ? one : many);
}

void AddStatistics(const Trend& trend, Lines& lines) {
  const TrendStatistics& all = trend.statistics;
  const auto& points = trend.series.points;
  std::string count = Counted(all.values, "value", "values");
  if (all.gaps > 0) count += ", " + Counted(all.gaps, "gap", "gaps");
  if (!points.empty()) {
    count +=
        ", " + DayText(DayOf(points.front().when)) + " to " + DayText(DayOf(points.back().when));
  }
  lines.Add("values", count);
  if (all.values == 0) return;
  lines.Add("median", Number(all.median) + ", spread " + Number(all.Spread()) + " (" +
                          Number(all.lower_quartile) + " to " + Number(all.upper_quartile) + ")");
  lines.Add("mean", Number(all.mean) + ", standard deviation " + Number(all.standard_deviation) +
                        ", range " + Number(all.minimum) + " to " + Number(all.maximum));
  if (all.slope) {
    lines.Add("slope", SignedNumber(all.slope->per_day, kSlopeDigits) +
                           " per day (95 %: " + SignedNumber(all.slope->low, kSlopeDigits) +
                           " to " + SignedNumber(all.slope->high, kSlopeDigits) + ")");
  } else {
    lines.Add("slope", "too few values");
  }
}

// One line a value, with the rules that it fulfils.
void AddHits(const Trend& trend, const TerminalStyle& style, Lines& lines) {
  const auto& hits = trend.control->hits;
  for (std::size_t i = 0; i < hits.size(); ++i) {
    const SeriesPoint& point = trend.series.points[trend.value_points[hits[i].value]];
    std::string text = TimeText(point.when) + ' ' + VisibleName(point.log) + ' ' +
                       Number(*point.value) + ": " + "rule " +
                       std::to_string(static_cast<int>(hits[i].rule)) + ", " +
                       std::string(RuleText(hits[i].rule));
    if (style.color) text = "\x1B[1;31m" + text + "\x1B[0m";
    lines.Add("", text);
  }
}

void AddControl(const Trend& trend, const TerminalStyle& style, Lines& lines) {
  if (!trend.control) {
    lines.Add("control", "too few values");
    return;
  }
  const ControlChart& chart = *trend.control;
  lines.Add("control", "mean " + Number(chart.mean) + ", limits " + Number(chart.lower) + " to " +
                           Number(chart.upper) + " (2.66 x mean moving range " +
                           Number(chart.moving_range) + ")" +
                           (chart.hits.empty() ? ", nothing unusual" : ""));
  AddHits(trend, style, lines);
}

std::string AmountText(const Amount& amount) {
  return Number(amount.number) + (amount.percent ? " %" : "");
}

std::string Bounds(const Limits& limits, const Amount& amount) {
  const double distance = amount.Of(limits.reference);
  const std::string low = Number(limits.reference - distance);
  const std::string high = Number(limits.reference + distance);
  if (limits.side == Limits::Side::kAbove) return "up to " + high;
  if (limits.side == Limits::Side::kBelow) return "down to " + low;
  return low + " to " + high;
}

void AddLimits(const Trend& trend, const TerminalStyle& style, Lines& lines) {
  if (!trend.limits) return;
  const Limits& limits = *trend.limits;
  std::string text = "reference " + Number(limits.reference);
  if (limits.tolerance) {
    text += ", tolerance " + AmountText(*limits.tolerance) + " (" +
            Bounds(limits, *limits.tolerance) + ")";
  }
  if (limits.action) {
    text += ", action " + AmountText(*limits.action) + " (" + Bounds(limits, *limits.action) + ")";
  }
  lines.Add("limits", text);
  const SeriesPoint* last = LastValue(trend);
  if (last == nullptr) return;
  const Verdict verdict = JudgeValue(limits, *last->value);
  std::string word(VerdictText(verdict));
  if (style.color && verdict != Verdict::kWithin) word = "\x1B[1;31m" + word + "\x1B[0m";
  lines.Add("last", Number(*last->value) + " at " + TimeText(last->when) + ' ' +
                        VisibleName(last->log) + ": " + word);
}

void AddMarks(const Trend& trend, Lines& lines) {
  for (const MarkChange& change : trend.changes) {
    const MaintenanceMark& mark = trend.series.marks[change.mark];
    std::string text = TimeText(mark.when) + ' ' + VisibleName(mark.log) + ' ' + MarkText(mark);
    if (change.difference) {
      text += ": median " + Number(*change.before) + " -> " + Number(*change.after) + " (" +
              SignedNumber(*change.difference, 5);
      if (change.percent) text += ", " + SignedNumber(*change.percent, kPercentDigits) + " %";
      text += ")";
    }
    lines.Add("mark " + MarkLetter(change.mark), text);
  }
}

}  // namespace

std::string TrendFigures(const Trend& trend, const TerminalStyle& style) {
  Lines lines;
  AddStatistics(trend, lines);
  if (trend.statistics.values > 0) AddControl(trend, style, lines);
  AddLimits(trend, style, lines);
  AddMarks(trend, lines);
  return std::move(lines).Text();
}

}  // namespace logbook::insight
