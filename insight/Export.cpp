// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Export.h"

#include "insight/Csv.h"
#include "insight/Difference.h"
#include "insight/LocalDate.h"
#include "insight/RowNames.h"
#include "insight/Upkeep.h"

namespace logbook::insight {
namespace {

constexpr std::string_view kOk = "ok";

ExportCell NumberCell(std::string_view catalogue, int row, std::string_view label, double value,
                      std::string_view text) {
  return {.catalogue = catalogue,
          .row = row,
          .label = label,
          .value = value,
          .text = text,
          .state = kOk};
}

std::string_view YesNo(bool value) {
  return value ? "yes" : "no";
}

}  // namespace

ExportRows::ExportRows(const Catalogues& catalogues)
    : catalogues_(catalogues), ticks_(insight::TickLabels()) {
  for (int place = 0; place < kAllRows; ++place) {
    infos_.push_back(DescribeRow(catalogues_, RowAtPlace(place)));
  }
}

void ExportRows::ForEach(const LogReading& reading,
                         const std::function<void(const ExportCell&)>& use) const {
  use({.catalogue = "log",
       .row = 0,
       .label = "Comment",
       .text = reading.Comment,
       .state = reading.HasComment ? kOk : NameOf(ValueState::kFileMissing),
       .foreign = true});
  use(NumberCell("log", 1, "Automatic", reading.Automatic ? 1 : 0, YesNo(reading.Automatic)));
  for (std::size_t i = 0; i < ticks_.size(); ++i) {
    use(NumberCell("tick", static_cast<int>(i), ticks_[i], reading.Ticks[i] ? 1 : 0,
                   YesNo(reading.Ticks[i])));
  }
  for (std::size_t i = 0; i < kOptionKeys.size(); ++i) {
    const double value = reading.Options.*kOptionKeys[i].Member;
    const std::string text = ExactNumber(value);
    use(NumberCell("option", static_cast<int>(i), kOptionKeys[i].Key, value, text));
  }
  ForEachRow(reading, use);
}

void ExportRows::ForEachRow(const LogReading& reading,
                            const std::function<void(const ExportCell&)>& use) const {
  int place = 0;
  for (const CatalogueInfo& catalogue : kCatalogues) {
    for (int row = 0; row < catalogue.Rows; ++row, ++place) {
      const RowInfo& info = InfoAt(place);
      const RowValue& value = reading.Values[static_cast<std::size_t>(place)];
      const std::string text = PrintedText(catalogues_, {catalogue.Which, row}, value);
      ExportCell cell{.catalogue = catalogue.Name,
                      .row = row,
                      .label = info.Label,
                      .unit = info.Unit,
                      .section = info.Section,
                      .text = text,
                      .state = NameOf(value.State)};
      cell.foreign = info.Kind == RowKind::kText;
      if (value.State == ValueState::kOk && !cell.foreign) cell.value = value.Number;
      use(cell);
    }
  }
}

std::string ExportRows::TitleAt(int place) const {
  const RowInfo& info = InfoAt(place);
  std::string title = std::to_string(RowAtPlace(place).Row) + " " + info.Label;
  if (!info.Unit.empty()) title += " (" + info.Unit + ")";
  return title;
}

std::string ExportDate(const LogReading& reading) {
  return reading.Date ? TimeText(*reading.Date) : reading.Identity.Date;
}

std::string FingerprintText(const LogIdentity& identity) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (int shift = 60; shift >= 0; shift -= 4) {
    text += kDigits[(identity.Fingerprint >> shift) & 0xF];
  }
  return text;
}

}  // namespace logbook::insight
