// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ShowOutput.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "insight/Csv.h"
#include "insight/RowNames.h"
#include "insight/TextTable.h"
#include "insight/VisibleText.h"

namespace logbook::insight {
namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> TicksOf(const LogReading& reading) {
  std::vector<std::string> labels;
  for (int item = 0; item < kItemHeaderCount; ++item) {
    if (reading.Ticks[static_cast<std::size_t>(item)]) labels.push_back(TickLabel(item));
  }
  return labels;
}

std::string Hexadecimal(std::uint64_t number) {
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(number));
  return digits.data();
}

// Where there is no value, why not.
std::string ReadingOf(const Catalogues& catalogues, const RowId& id, const RowValue& value) {
  const bool printed = value.State == ValueState::kOk || value.State == ValueState::kNotApplicable;
  return printed ? PrintedText(catalogues, id, value)
                 : "(" + std::string(NameOf(value.State)) + ")";
}

std::string OptionsText(const LogReading& reading) {
  std::string text;
  for (const OptionKey& each : kOptionKeys) {
    const double option = reading.Options.*each.Member;
    if (option == 0) continue;
    text += (text.empty() ? "" : " ") + std::string(each.Key);
    if (option != 1) text += "=" + ExactNumber(option);
  }
  return text.empty() ? "none" : text;
}

std::string TicksText(const LogReading& reading) {
  std::string text;
  for (const std::string& label : TicksOf(reading)) text += (text.empty() ? "" : "; ") + label;
  return text.empty() ? "none" : text;
}

// A line of the comment below the other.
std::string CommentText(const LogReading& reading) {
  std::string text;
  for (const char byte : reading.Comment) {
    text += byte;
    if (byte == '\n') text += "          ";
  }
  return text.empty() ? "none" : VisibleText(text);
}

std::string HeadText(const LogReading& reading) {
  std::string text = "Log:      " + VisibleName(reading.Identity.Folder) +
                     "\nRoot:     " + VisibleName(reading.Identity.Root) +
                     "\nDate:     " + VisibleName(reading.Identity.Date) +
                     (reading.Automatic ? "\nRecord:   automatic" : "") +
                     "\nOptions:  " + OptionsText(reading) + "\nTicks:    " + TicksText(reading) +
                     "\nComment:  " + CommentText(reading) + "\n";
  for (const std::string& name : reading.RefusedFiles) {
    text += "Cannot be opened: " + VisibleName(name) + "\n";
  }
  return text;
}

}  // namespace

std::vector<RowId> RowsBySection(const Catalogues& catalogues, std::optional<Catalogue> which) {
  std::vector<RowId> rows;
  for (const CatalogueInfo& each : kCatalogues) {
    if (which && each.Which != *which) continue;
    std::vector<std::string> sections;
    std::vector<std::pair<std::size_t, RowId>> placed;
    for (int row = 0; row < each.Rows; ++row) {
      const RowId id = {each.Which, row};
      const std::string section = DescribeRow(catalogues, id).Section;
      const auto known = std::find(sections.begin(), sections.end(), section);
      placed.emplace_back(known - sections.begin(), id);
      if (known == sections.end()) sections.push_back(section);
    }
    std::stable_sort(placed.begin(), placed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& [place, id] : placed) rows.push_back(id);
  }
  return rows;
}

std::string ShowText(const Catalogues& catalogues, const LogReading& reading,
                     const std::vector<RowId>& rows) {
  TextTable table({"", "", ">", ""});
  std::string heading;
  for (const RowId& id : rows) {
    const RowInfo info = DescribeRow(catalogues, id);
    std::string here = std::string(InfoOf(id.Which).Title) + ", " + info.Section;
    if (here != heading) {
      table.AddLine("");
      table.AddLine(here);
      heading = std::move(here);
    }
    const RowValue& value = reading.At(id);
    table.Add({"  " + NameOf(id), info.Label, ReadingOf(catalogues, id, value),
               value.State == ValueState::kOk ? info.Unit : ""});
  }
  return HeadText(reading) + table.Text();
}

std::string ShowJson(const Catalogues& catalogues, const LogReading& reading,
                     const std::vector<RowId>& rows) {
  Json options;
  for (const OptionKey& each : kOptionKeys) {
    options[std::string(each.Key)] = reading.Options.*each.Member;
  }
  Json values = Json::array();
  for (const RowId& id : rows) {
    const RowInfo info = DescribeRow(catalogues, id);
    const RowValue& value = reading.At(id);
    const bool number = value.State == ValueState::kOk && info.Kind != RowKind::kText;
    values.push_back({{"catalogue", InfoOf(id.Which).Name},
                      {"row", id.Row},
                      {"label", info.Label},
                      {"unit", info.Unit},
                      {"section", info.Section},
                      {"state", NameOf(value.State)},
                      {"value", number ? Json(value.Number) : Json(nullptr)},
                      {"text", PrintedText(catalogues, id, value)}});
  }
  const Json json = {
      {"root", reading.Identity.Root},   {"log", reading.Identity.Folder},
      {"date", reading.Identity.Date},   {"fingerprint", Hexadecimal(reading.Identity.Fingerprint)},
      {"automatic", reading.Automatic},  {"options", std::move(options)},
      {"ticks", TicksOf(reading)},       {"comment", reading.Comment},
      {"refused", reading.RefusedFiles}, {"values", std::move(values)}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace logbook::insight
