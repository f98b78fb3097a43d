// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <nlohmann/json.hpp>

#include "insight/DifferenceText.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
Json OrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json HeadJson(const LogHead& head) {
  return {{"root", head.identity.Root}, {"log", head.identity.Folder},
          {"date", head.identity.Date}, {"automatic", head.automatic},
          {"ticks", head.ticks},        {"comment", head.comment}};
}

Json ValueJson(const Catalogues& catalogues, const RowId& id, const RowValue& value) {
  const bool number = value.State == ValueState::kOk && KindOf(catalogues, id) != RowKind::kText;
  return {{"state", NameOf(value.State)},
          {"value", number ? Json(value.Number) : Json(nullptr)},
          {"text", PrintedText(catalogues, id, value)}};
}

Json RowsJson(const Catalogues& catalogues, const std::vector<ChangedRow>& rows) {
  Json list = Json::array();
  for (const ChangedRow& row : rows) {
    const RowInfo info = DescribeRow(catalogues, row.id);
    list.push_back({{"catalogue", InfoOf(row.id.Which).Name},
                    {"row", row.id.Row},
                    {"label", info.Label},
                    {"unit", info.Unit},
                    {"section", info.Section},
                    {"old", ValueJson(catalogues, row.id, row.left)},
                    {"new", ValueJson(catalogues, row.id, row.right)},
                    {"difference", OrNull(row.difference)},
                    {"percent", OrNull(row.percent)}});
  }
  return list;
}

Json OneJson(const Catalogues& catalogues, const LogDifference& difference) {
  Json options = Json::array();
  for (const ChangedOption& option : difference.options) {
    options.push_back({{"key", option.key}, {"old", option.left}, {"new", option.right}});
  }
  Json missing = Json::array();
  for (const MissingCatalogue& each : difference.missing) {
    missing.push_back(
        {{"catalogue", InfoOf(each.which).Name}, {"in", each.side == Side::kLeft ? "old" : "new"}});
  }
  return {{"old", HeadJson(difference.left)},
          {"new", HeadJson(difference.right)},
          {"different", difference.Different()},
          {"options", std::move(options)},
          {"applicability", RowsJson(catalogues, difference.applicability)},
          {"missing", std::move(missing)},
          {"values", RowsJson(catalogues, difference.values)}};
}

}  // namespace

std::string DifferenceJson(const Catalogues& catalogues,
                           const std::vector<LogDifference>& differences) {
  Json list = Json::array();
  for (const LogDifference& difference : differences) {
    list.push_back(OneJson(catalogues, difference));
  }
  Json document;
  document["differences"] = std::move(list);
  return document.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace logbook::insight
