// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TrendData.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "insight/Csv.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json PointJson(const Trend& trend, std::size_t index) {
  const SeriesPoint& point = trend.series.points[index];
  Json json = {{"log", point.log},
               {"date", TimeText(point.when)},
               {"value", OrNull(point.value)},
               {"text", point.text},
               {"state", point.state}};
  Json rules = Json::array();
  for (const ControlRule rule : RulesAt(trend, index)) rules.push_back(static_cast<int>(rule));
  json["rules"] = std::move(rules);
  return json;
}

Json StatisticsJson(const TrendStatistics& all) {
  Json json = {{"values", all.values}, {"gaps", all.gaps}};
  if (all.values == 0) return json;
  json.update({{"median", all.median},
               {"lower_quartile", all.lower_quartile},
               {"upper_quartile", all.upper_quartile},
               {"spread", all.Spread()},
               {"mean", all.mean},
               {"standard_deviation", all.standard_deviation},
               {"minimum", all.minimum},
               {"maximum", all.maximum}});
  if (all.slope) {
    json["slope"] = {{"per_day", all.slope->per_day},
                     {"low", all.slope->low},
                     {"high", all.slope->high},
                     {"confidence", 0.95}};
  } else {
    json["slope"] = nullptr;
  }
  return json;
}

Json ControlJson(const std::optional<ControlChart>& chart) {
  if (!chart) return nullptr;
  return {{"mean", chart->mean},
          {"moving_range", chart->moving_range},
          {"lower", chart->lower},
          {"upper", chart->upper},
          {"hits", chart->hits.size()}};
}

Json AmountJson(const std::optional<Amount>& amount) {
  if (!amount) return nullptr;
  return {{"number", amount->number}, {"percent", amount->percent}};
}

std::string_view SideText(Limits::Side side) {
  switch (side) {
    case Limits::Side::kBoth:
      return "both";
    case Limits::Side::kAbove:
      return "above";
    case Limits::Side::kBelow:
      return "below";
  }
  return {};
}

Json LimitsJson(const Trend& trend) {
  if (!trend.limits) return nullptr;
  const Limits& limits = *trend.limits;
  Json json = {{"reference", limits.reference},
               {"tolerance", AmountJson(limits.tolerance)},
               {"action", AmountJson(limits.action)},
               {"side", SideText(limits.side)},
               {"verdict", nullptr}};
  if (const SeriesPoint* last = LastValue(trend)) {
    json["verdict"] = VerdictText(JudgeValue(limits, *last->value));
  }
  return json;
}

Json MarkJson(const Trend& trend, const MarkChange& change) {
  const MaintenanceMark& mark = trend.series.marks[change.mark];
  return {{"log", mark.log},
          {"date", TimeText(mark.when)},
          {"items", mark.labels},
          {"before", OrNull(change.before)},
          {"after", OrNull(change.after)},
          {"difference", OrNull(change.difference)},
          {"percent", OrNull(change.percent)}};
}

Json TrendDocument(const Trend& trend) {
  Json points = Json::array();
  for (std::size_t i = 0; i < trend.series.points.size(); ++i)
    points.push_back(PointJson(trend, i));
  Json marks = Json::array();
  for (const MarkChange& change : trend.changes) marks.push_back(MarkJson(trend, change));
  return {{"catalogue", trend.series.catalogue},
          {"row", trend.series.row},
          {"label", trend.series.label},
          {"unit", trend.series.unit},
          {"section", trend.series.section},
          {"root", trend.series.source.empty() ? Json(nullptr) : Json(trend.series.source)},
          {"statistics", StatisticsJson(trend.statistics)},
          {"control", ControlJson(trend.control)},
          {"limits", LimitsJson(trend)},
          {"marks", std::move(marks)},
          {"values", std::move(points)}};
}

std::string MarksAt(const Series& series, LocalTime when, const std::string& log) {
  const auto earlier = [](const MaintenanceMark& mark, LocalTime moment) {
    return mark.when < moment;
  };
  std::string text;
  for (auto mark = std::lower_bound(series.marks.begin(), series.marks.end(), when, earlier);
       mark != series.marks.end() && mark->when == when; ++mark) {
    if (mark->log != log) continue;
    for (const std::string& label : mark->labels) text += (text.empty() ? "" : ";") + label;
  }
  return text;
}

void AddPoint(const Trend& trend, std::size_t index, CsvLine& line) {
  const Series& series = trend.series;
  const SeriesPoint& point = series.points[index];
  std::string rules;
  for (const ControlRule rule : RulesAt(trend, index)) {
    rules += (rules.empty() ? "" : ";") + std::to_string(static_cast<int>(rule));
  }
  line.AddText(point.log).Add(TimeText(point.when)).Add(series.catalogue);
  line.Add(std::to_string(series.row)).AddText(series.label).Add(series.unit);
  line.Add(point.value ? ExactNumber(*point.value) : "").Add(point.text).Add(point.state);
  line.Add(rules).Add(MarksAt(series, point.when, point.log));
}

}  // namespace

std::string TrendCsv(const std::vector<Trend>& trends) {
  std::string csv = "log,date,catalogue,row,label,unit,value,text,state,rules,marks\r\n";
  CsvLine line;
  for (const Trend& trend : trends) {
    for (std::size_t i = 0; i < trend.series.points.size(); ++i) {
      AddPoint(trend, i, line);
      csv += line.Take();
    }
  }
  return csv;
}

std::string TrendJson(const std::vector<Trend>& trends) {
  Json list = Json::array();
  for (const Trend& trend : trends) list.push_back(TrendDocument(trend));
  Json document;
  document["trends"] = std::move(list);
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace logbook::insight
