// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/FindOutput.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <tuple>

#include "base/UpperCase.h"
#include "insight/Csv.h"
#include "insight/RowNames.h"
#include "insight/TextTable.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

struct SpecialName {
  std::string_view name;
  FindColumn::Kind kind;
  std::string_view title;
};
constexpr auto kSpecialNames = std::to_array<SpecialName>({
    {"date", FindColumn::Kind::kDate, "Date"},
    {"log", FindColumn::Kind::kLog, "Log"},
    {"root", FindColumn::Kind::kRoot, "Root"},
    {"auto", FindColumn::Kind::kAutomatic, "Automatic"},
    {"ticks", FindColumn::Kind::kTicks, "Ticks"},
    {"comment", FindColumn::Kind::kComment, "Comment"},
});

std::vector<std::string> TicksOf(const FoundLog& log) {
  std::vector<std::string> labels;
  for (int item = 0; item < kItemHeaderCount; ++item) {
    if (log.Ticks[static_cast<std::size_t>(item)]) labels.push_back(TickLabel(item));
  }
  return labels;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : "; ") + word;
  return text;
}

std::string TitleOf(const FindAnswer& answer, const Catalogues& catalogues,
                    const FindColumn& column) {
  if (column.What == FindColumn::Kind::kRow) {
    const RowInfo info = DescribeRow(catalogues, answer.Rows[column.Value].front());
    return info.Unit.empty() ? info.Label : info.Label + " (" + info.Unit + ")";
  }
  return std::string(
      std::find_if(kSpecialNames.begin(), kSpecialNames.end(), [&](const SpecialName& each) {
        return each.kind == column.What;
      })->title);
}

// A value as it prints; in brackets the state where there is none.
std::string CellOf(const Catalogues& catalogues, const FoundLog& log, std::size_t value) {
  const RowValue& found = log.Values[value];
  if (found.State == ValueState::kOk || found.State == ValueState::kNotApplicable) {
    return PrintedText(catalogues, log.ValueRows[value], found);
  }
  return "(" + std::string(NameOf(found.State)) + ")";
}

std::string CellOf(const FindAnswer::Entry& entry, const Catalogues& catalogues,
                   const FindColumn& column) {
  switch (column.What) {
    case FindColumn::Kind::kDate:
      return entry.Log.Record.Date;
    case FindColumn::Kind::kLog:
      return entry.Log.Folder;
    case FindColumn::Kind::kRoot:
      return entry.Root;
    case FindColumn::Kind::kAutomatic:
      return entry.Log.Automatic ? "yes" : "no";
    case FindColumn::Kind::kTicks:
      return Joined(TicksOf(entry.Log));
    case FindColumn::Kind::kComment:
      return std::string(FirstLine(entry.Log.Record.Comment));
    case FindColumn::Kind::kRow:
      return CellOf(catalogues, entry.Log, column.Value);
  }
  return {};
}

Json ValueJson(const Catalogues& catalogues, const RowId& id, const RowValue& value) {
  const RowInfo info = DescribeRow(catalogues, id);
  const bool number = value.State == ValueState::kOk && info.Kind != RowKind::kText;
  return {{"catalogue", InfoOf(id.Which).Name},
          {"row", id.Row},
          {"label", info.Label},
          {"unit", info.Unit},
          {"section", info.Section},
          {"state", NameOf(value.State)},
          {"value", number ? Json(value.Number) : Json(nullptr)},
          {"text", PrintedText(catalogues, id, value)}};
}

std::string Dumped(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::optional<FindColumn> FindSpecialColumn(std::string_view name) {
  for (const SpecialName& each : kSpecialNames) {
    if (each.name == name) return FindColumn{each.kind, 0};
  }
  return std::nullopt;
}

void SortAnswer(FindAnswer& answer, const Catalogues& catalogues, FindRequest::Key key,
                FindRequest::Order order) {
  // Missing or not, number, text; what a log is sorted by, before its name.
  using Rank = std::tuple<double, std::string>;
  const auto missing = [&](const FoundLog& log) {
    if (key == FindRequest::Key::kDate) return !log.Date.has_value();
    return key == FindRequest::Key::kRow && log.Values.back().State != ValueState::kOk;
  };
  const auto rank = [&](const FoundLog& log) -> Rank {
    if (missing(log) || key == FindRequest::Key::kFolder) return {};
    if (key == FindRequest::Key::kDate) {
      return {static_cast<double>(log.Date->time_since_epoch().count()), {}};
    }
    const bool text = KindOf(catalogues, log.ValueRows.back()) == RowKind::kText;
    return {log.Values.back().Number, text ? UpperCaseText(log.Values.back().Text) : ""};
  };
  const bool descending = order == FindRequest::Order::kDescending;
  std::stable_sort(answer.Logs.begin(), answer.Logs.end(),
                   [&](const FindAnswer::Entry& a, const FindAnswer::Entry& b) {
                     if (missing(a.Log) != missing(b.Log)) return missing(b.Log);
                     const auto of = [&](const FindAnswer::Entry& entry) {
                       return std::tuple(rank(entry.Log), UpperCaseText(entry.Log.Folder));
                     };
                     return descending ? of(b) < of(a) : of(a) < of(b);
                   });
}

std::string FindTable(const FindAnswer& answer, const Catalogues& catalogues) {
  std::vector<std::string> titles;
  for (const FindColumn& column : answer.Columns) {
    const bool number = column.What == FindColumn::Kind::kRow &&
                        KindOf(catalogues, answer.Rows[column.Value].front()) == RowKind::kNumber;
    titles.push_back((number ? ">" : "") + TitleOf(answer, catalogues, column));
  }
  TextTable table(titles);
  for (const FindAnswer::Entry& entry : answer.Logs) {
    std::vector<std::string> cells;
    for (const FindColumn& column : answer.Columns) {
      cells.push_back(CellOf(entry, catalogues, column));
    }
    table.Add(std::move(cells));
  }
  return table.Text();
}

std::string FindCsv(const FindAnswer& answer, const Catalogues& catalogues) {
  CsvLine line;
  for (const FindColumn& column : answer.Columns) line.AddText(TitleOf(answer, catalogues, column));
  std::string text = line.Take();
  for (const FindAnswer::Entry& entry : answer.Logs) {
    for (const FindColumn& column : answer.Columns) {
      const bool row = column.What == FindColumn::Kind::kRow;
      const bool number =
          row && KindOf(catalogues, entry.Log.ValueRows[column.Value]) == RowKind::kNumber;
      const std::string cell = CellOf(entry, catalogues, column);
      number ? line.Add(cell) : line.AddText(cell);
    }
    text += line.Take();
  }
  return text;
}

std::string FindJson(const FindAnswer& answer, const Catalogues& catalogues) {
  Json logs = Json::array();
  for (const FindAnswer::Entry& entry : answer.Logs) {
    const FoundLog& log = entry.Log;
    std::array<char, 17> fingerprint{};
    std::snprintf(fingerprint.data(), fingerprint.size(), "%016llx",
                  static_cast<unsigned long long>(log.Record.Fingerprint));
    Json values = Json::array();
    for (const FindColumn& column : answer.Columns) {
      if (column.What != FindColumn::Kind::kRow) continue;
      values.push_back(
          ValueJson(catalogues, log.ValueRows[column.Value], log.Values[column.Value]));
    }
    logs.push_back({{"root", entry.Root},
                    {"log", log.Folder},
                    {"date", log.Record.Date},
                    {"fingerprint", fingerprint.data()},
                    {"automatic", log.Automatic},
                    {"ticks", TicksOf(log)},
                    {"comment", log.Record.Comment},
                    {"values", std::move(values)}});
  }
  return Dumped({{"query", answer.Query}, {"count", answer.Count}, {"logs", std::move(logs)}});
}

}  // namespace logbook::insight
