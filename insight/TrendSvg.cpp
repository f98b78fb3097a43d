// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendSvg.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "insight/Markup.h"

namespace logbook::insight {
namespace {

// Lengths in units of the drawing, which are pixels where it is shown in its own size.
constexpr double kWidth = 960;
constexpr double kLeft = 84;
constexpr double kRight = 104;
constexpr double kTop = 12;
constexpr double kPanelHeight = 200;
constexpr double kTitleHeight = 28;
constexpr double kPanelGap = 14;
constexpr double kTimeHeight = 34;
constexpr double kLaneHeight = 15;
constexpr double kLetterWidth = 6.4;  // of the 11-pixel labels, rather too wide than too narrow
constexpr std::size_t kMostLanes = 6;

constexpr std::string_view kStyle =
    "text{font-family:sans-serif;font-size:11px;fill:#333}"
    ".title{font-size:14px;font-weight:bold}"
    ".frame{fill:#fff;stroke:#999}.grid{stroke:#e4e4e4}"
    ".curve{fill:none;stroke:#1f5fa8;stroke-width:1.5;stroke-linejoin:round}"
    ".point{fill:#1f5fa8}.hit{fill:#c0271d;stroke:#fff;stroke-width:.5}"
    ".mean{stroke:#1f5fa8;stroke-opacity:.6}"
    ".control{stroke:#c0271d;stroke-dasharray:7 4}"
    ".reference{stroke:#2d7d46}.tolerance{stroke:#2d7d46;stroke-dasharray:3 3}"
    ".action{stroke:#b35c00;stroke-dasharray:9 3 2 3}"
    ".mark{stroke:#6b4fa0;stroke-dasharray:2 3}.marktext{fill:#6b4fa0}"
    ".none{fill:#777}";

struct LevelStyle {
  std::string_view style;
  std::string_view name;
};

LevelStyle StyleOf(LevelLine::Kind kind) {
  switch (kind) {
    case LevelLine::Kind::kMean:
      return {"mean", "mean"};
    case LevelLine::Kind::kControl:
      return {"control", "control"};
    case LevelLine::Kind::kReference:
      return {"reference", "reference"};
    case LevelLine::Kind::kTolerance:
      return {"tolerance", "tolerance"};
    case LevelLine::Kind::kAction:
      return {"action", "action"};
  }
  return {};
}

std::string Attribute(std::string_view name, double value) {
  return std::string(" ").append(name).append("=\"").append(Length(value)).append("\"");
}

std::string Line(std::string_view style, double x1, double y1, double x2, double y2) {
  return std::string("<line class=\"").append(style).append("\"") + Attribute("x1", x1) +
         Attribute("y1", y1) + Attribute("x2", x2) + Attribute("y2", y2) + "/>\n";
}

std::string Text(double x, double y, std::string_view text, std::string_view attributes = "") {
  return "<text" + Attribute("x", x) + Attribute("y", y) + std::string(attributes) + ">" +
         EscapeMarkup(text) + "</text>\n";
}

// Where the label of a mark stands: in a lane above the panels, at the right of the mark's line or,
// where the drawing ends there, at its left.
struct MarkLabel {
  int lane = -1;  // from 0 at the top; -1 for a label that has no room
  bool at_left = false;
};

// Each label in the first lane that has room for it. Marks and places ascend.
std::vector<MarkLabel> ArrangeMarkLabels(const std::vector<MaintenanceMark>& marks,
                                         const std::vector<double>& places) {
  std::array<double, kMostLanes> ends{};
  std::vector<MarkLabel> labels;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    const double width = static_cast<double>(MarkText(marks[i]).size()) * kLetterWidth + 10;
    MarkLabel label;
    label.at_left = places[i] + width > kWidth;
    const double from = label.at_left ? places[i] - width : places[i];
    const auto lane =
        std::find_if(ends.begin(), ends.end(), [&](double end) { return end <= from; });
    if (lane != ends.end()) {
      *lane = from + width;
      label.lane = static_cast<int>(lane - ends.begin());
    }
    labels.push_back(label);
  }
  return labels;
}

int LaneCount(const std::vector<MarkLabel>& labels) {
  int count = 0;
  for (const MarkLabel& label : labels) count = std::max(count, label.lane + 1);
  return count;
}

class Drawing {
 public:
  explicit Drawing(const std::vector<Trend>& trends)
      : trends_(trends),
        times_(TimeAxisOf(trends, 9)),
        marks_(trends.empty() ? std::vector<MaintenanceMark>{} : trends.front().series.marks),
        labels_(ArrangeMarkLabels(marks_, MarkPlaces())),
        panels_top_(kTop + LaneCount(labels_) * kLaneHeight) {}

  std::string Draw() {
    const double bottom = panels_top_ + static_cast<double>(trends_.size()) *
                                            (kPanelHeight + kTitleHeight + kPanelGap);
    const double height = bottom + kTimeHeight;
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + Length(kWidth) +
                      " " + Length(height) + "\"" + Attribute("width", kWidth) +
                      Attribute("height", height) + " role=\"img\">\n";
    svg += "<title>" + EscapeMarkup(Titles()) + "</title>\n<style>";
    svg += kStyle;
    svg += "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n";
    for (std::size_t i = 0; i < trends_.size(); ++i) svg += Panel(trends_[i], PanelTop(i));
    if (!trends_.empty()) svg += TimeLabels(bottom - kPanelGap) + Marks(bottom - kPanelGap);
    return svg + "</svg>\n";
  }

 private:
  double X(double day) const { return kLeft + times_.Share(day) * (kWidth - kLeft - kRight); }
  static double Y(const Axis& values, double top, double value) {
    return top + (1 - values.Share(value)) * kPanelHeight;
  }

  double PanelTop(std::size_t panel) const {
    return panels_top_ + kTitleHeight +
           static_cast<double>(panel) * (kPanelHeight + kTitleHeight + kPanelGap);
  }

  std::string Titles() const {
    std::string titles;
    for (const Trend& trend : trends_)
      titles += (titles.empty() ? "" : ", ") + TitleOf(trend.series);
    return titles;
  }

  std::vector<double> MarkPlaces() const {
    std::vector<double> places;
    for (const MaintenanceMark& mark : marks_) places.push_back(X(DaysOf(mark.when)));
    return places;
  }

  std::string Panel(const Trend& trend, double top) const {
    const Axis values = ValueAxisOf(trend, 5);
    std::string svg = "<g>\n" + Text(kLeft, top - 9, TitleOf(trend.series), " class=\"title\"");
    svg += "<rect class=\"frame\"" + Attribute("x", kLeft) + Attribute("y", top) +
           Attribute("width", kWidth - kLeft - kRight) + Attribute("height", kPanelHeight) + "/>\n";
    svg += Grid(values, top);
    if (trend.value_points.empty()) {
      svg += Text(kLeft + 12, top + kPanelHeight / 2, "no value", " class=\"none\"");
    } else {
      svg += Levels(trend, values, top) + Curve(trend, values, top) + Points(trend, values, top);
    }
    return svg + "</g>\n";
  }

  std::string Grid(const Axis& values, double top) const {
    std::string svg;
    for (const Tick& tick : values.ticks) {
      const double y = Y(values, top, tick.place);
      svg += Line("grid", kLeft, y, kWidth - kRight, y);
      svg += Text(kLeft - 6, y + 4, tick.label, " text-anchor=\"end\"");
    }
    for (const Tick& tick : times_.ticks) {
      svg += Line("grid", X(tick.place), top, X(tick.place), top + kPanelHeight);
    }
    return svg;
  }

  // Lines of limits with their names at the right, moved apart where they would touch.
  std::string Levels(const Trend& trend, const Axis& values, double top) const {
    std::vector<LevelLine> lines = LevelLinesOf(trend);
    std::sort(lines.begin(), lines.end(),
              [](const LevelLine& a, const LevelLine& b) { return a.value > b.value; });
    std::string svg;
    double free = top;
    for (const LevelLine& line : lines) {
      const double y = Y(values, top, line.value);
      const LevelStyle look = StyleOf(line.kind);
      svg += Line(look.style, kLeft, y, kWidth - kRight, y);
      const double text_y = std::max(y + 4, free);
      free = text_y + 12;
      svg += Text(kWidth - kRight + 4, text_y,
                  std::string(look.name) + ' ' + ShortNumber(line.value, 4));
    }
    return svg;
  }

  std::string Curve(const Trend& trend, const Axis& values, double top) const {
    std::string path;
    bool drawing = false;
    for (const SeriesPoint& point : trend.series.points) {
      if (point.value) {
        path += (drawing ? "L" : "M") + Length(X(DaysOf(point.when))) + ' ' +
                Length(Y(values, top, *point.value));
      }
      drawing = point.value.has_value();
    }
    return "<path class=\"curve\" d=\"" + path + "\"/>\n";
  }

  std::string Points(const Trend& trend, const Axis& values, double top) const {
    std::string svg;
    for (const std::size_t index : trend.value_points) {
      const SeriesPoint& point = trend.series.points[index];
      const double x = X(DaysOf(point.when));
      const double y = Y(values, top, *point.value);
      const std::vector<ControlRule> rules = RulesAt(trend, index);
      if (rules.empty()) {
        svg += "<circle class=\"point\"" + Attribute("cx", x) + Attribute("cy", y) + " r=\"2.5\">";
      } else {
        svg +=
            "<path class=\"hit\" d=\"M" + Length(x) + ' ' + Length(y - 6) + "l6 6l-6 6l-6 -6z\">";
      }
      svg += "<title>" + EscapeMarkup(PointText(point, rules)) + "</title>";
      svg += rules.empty() ? "</circle>\n" : "</path>\n";
    }
    return svg;
  }

  static std::string PointText(const SeriesPoint& point, const std::vector<ControlRule>& rules) {
    std::string text = point.log + ' ' + TimeText(point.when) + ": " + ShortNumber(*point.value);
    for (const ControlRule rule : rules) text += "; " + std::string(RuleText(rule));
    return text;
  }

  std::string TimeLabels(double bottom) const {
    std::string svg;
    for (const Tick& tick : times_.ticks) {
      svg += Text(X(tick.place), bottom + 16, tick.label, " text-anchor=\"middle\"");
    }
    return svg;
  }

  std::string Marks(double bottom) const {
    std::string svg;
    for (std::size_t i = 0; i < marks_.size(); ++i) {
      const double x = X(DaysOf(marks_[i].when));
      const int lane = labels_[i].lane;
      const double y = lane < 0 ? panels_top_ : kTop + (lane + 1) * kLaneHeight - 4;
      svg +=
          "<g><title>" +
          EscapeMarkup(TimeText(marks_[i].when) + ' ' + marks_[i].log + ' ' + MarkText(marks_[i])) +
          "</title>\n" + Line("mark", x, lane < 0 ? y : y - 8, x, bottom);
      if (lane >= 0 && labels_[i].at_left) {
        svg += Text(x - 4, y, MarkText(marks_[i]), " class=\"marktext\" text-anchor=\"end\"");
      } else if (lane >= 0) {
        svg += Text(x + 4, y, MarkText(marks_[i]), " class=\"marktext\"");
      }
      svg += "</g>\n";
    }
    return svg;
  }

  const std::vector<Trend>& trends_;
  Axis times_;
  std::vector<MaintenanceMark> marks_;
  std::vector<MarkLabel> labels_;
  double panels_top_;
};

}  // namespace

std::string TrendSvg(const std::vector<Trend>& trends) {
  return Drawing(trends).Draw();
}

}  // namespace logbook::insight
