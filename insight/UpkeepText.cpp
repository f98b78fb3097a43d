// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/UpkeepText.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <tuple>

#include "insight/TextTable.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

std::string DateText(const std::optional<TickDate>& date) {
  return date ? DayText(DayOf(date->when)) + ' ' + date->log : "-";
}

// The most urgent first: overdue ones by their days, what was never done, then the rest.
auto Urgency(const DueItem& item) {
  const int kind = item.days_left ? 0 : (item.state == DueItem::State::kNever ? 1 : 2);
  return std::tuple(kind, item.days_left.value_or(0), item.item);
}

Json DateJson(const std::optional<TickDate>& date) {
  if (!date) return nullptr;
  return {{"date", TimeText(date->when)}, {"log", date->log}};
}

Json ItemJson(const DueItem& item) {
  return {{"item", item.item},
          {"label", item.label},
          {"state", StateText(item.state)},
          {"interval", item.interval ? Json(IntervalText(*item.interval)) : Json(nullptr)},
          {"due", item.due ? Json(DayText(*item.due)) : Json(nullptr)},
          {"days_left", item.days_left ? Json(*item.days_left) : Json(nullptr)},
          {"certain", DateJson(item.certain)},
          {"claimed", DateJson(item.claimed)}};
}

// The cells that both tables have.
std::vector<std::string> CellsOf(const DueItem& item) {
  return {std::string(StateText(item.state)),
          item.days_left ? std::to_string(*item.days_left) : "-",
          item.due ? DayText(*item.due) : "-", item.label,
          item.interval ? IntervalText(*item.interval) : "-"};
}

std::string WideTable(const std::vector<DueItem>& items) {
  TextTable table({"State", ">Days", "Due", "Item", "Interval", "Last certain", "Last claimed"});
  for (const DueItem& item : items) {
    std::vector<std::string> cells = CellsOf(item);
    cells.push_back(DateText(item.certain));
    cells.push_back(DateText(item.claimed));
    table.Add(std::move(cells));
  }
  return table.Text();
}

std::string NarrowTable(const std::vector<DueItem>& items) {
  TextTable table({"State", ">Days", "Due", "Item", "Interval"});
  for (const DueItem& item : items) {
    table.Add(CellsOf(item));
    if (item.certain || item.claimed)
      table.AddLine("    last certain " + DateText(item.certain) + ", last claimed " +
                    DateText(item.claimed));
  }
  return table.Text();
}

bool Fits(std::string_view table, int columns) {
  for (std::size_t from = 0; from < table.size();) {
    const std::size_t end = table.find('\n', from);
    if (end - from > static_cast<std::size_t>(columns)) return false;
    from = end + 1;
  }
  return true;
}

}  // namespace

std::string DueTable(const DueReport& report, int columns) {
  std::vector<DueItem> items = report.items;
  std::sort(items.begin(), items.end(),
            [](const DueItem& a, const DueItem& b) { return Urgency(a) < Urgency(b); });
  std::string table = WideTable(items);
  return columns <= 0 || Fits(table, columns) ? table : NarrowTable(items);
}

std::string DueJson(const std::vector<DueReport>& reports) {
  Json roots = Json::array();
  for (const DueReport& report : reports) {
    Json items = Json::array();
    for (const DueItem& item : report.items) items.push_back(ItemJson(item));
    roots.push_back({{"root", report.root},
                     {"today", DayText(report.today)},
                     {"reckoned_from", report.from == TickKind::kCertain ? "certain" : "claimed"},
                     {"items", std::move(items)}});
  }
  Json document;
  document["roots"] = std::move(roots);
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace logbook::insight
