// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/CatalogueRow.h"

#include <span>

#include "base/UpperCase.h"
#include "reports/ReportLayouts.h"
#include "resources/Resources.h"
#include "snapshot/SystemParameters.h"

namespace logbook::insight {
namespace {

// The kinds of tune values by their groups, from 1. No report has headings for them.
constexpr auto kTuneSections = std::to_array<std::string_view>(
    {"Sensitivity", "Doubly Charged, Oxide, Background", "Axis and Resolution",
     "Torch Position and Gases", "Lenses", "Quadrupole and Detector", "Lenses(Lumarin)",
     "Reaction Cell Gases", "Lenses(Varion TRZ(cs))", "Instrument", "Lenses(Varion TRZ(ce))"});

std::string SectionOf(const ReportLayout& layout, int group) {
  for (const SectionHeading& heading : layout.Headings) {
    if (heading.Section != group) continue;
    std::string text(LoadResString(heading.String));
    if (text.ends_with(':')) text.pop_back();
    return text;
  }
  return {};
}

RowInfo Describe(const ItemRecord& item, const ReportLayout& layout) {
  RowInfo info;
  info.Kind = item.Format.empty() ? RowKind::kText : RowKind::kNumber;
  info.Label = item.Name;
  info.Unit = item.Unit;
  info.Format = item.Format;
  info.Section = SectionOf(layout, item.Group);
  return info;
}

RowInfo Describe(const TuneItemRecord& item) {
  RowInfo info;
  info.Kind = item.Format.empty() ? RowKind::kText : RowKind::kNumber;
  info.Label = item.Name;
  info.Unit = item.Unit;
  info.Format = item.Format;
  info.Section = RowAt(kTuneSections, item.Group - 1);
  return info;
}

RowInfo Describe(const BitItemRecord& item, const ReportLayout& layout) {
  RowInfo info;
  info.Kind = RowKind::kBit;
  info.Label = item.Name;
  info.Section = SectionOf(layout, item.Group);
  info.Label0 = item.Label0;
  info.Label1 = item.Label1;
  return info;
}

}  // namespace

std::optional<Catalogue> FindCatalogue(std::string_view name) {
  for (const CatalogueInfo& each : kCatalogues) {
    if (EqualIgnoringCase(each.Name, name)) return each.Which;
  }
  return std::nullopt;
}

RowId RowAtPlace(int place) {
  for (const CatalogueInfo& each : kCatalogues) {
    if (place < each.Rows) return {each.Which, place};
    place -= each.Rows;
  }
  throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
}

std::string NameOf(const RowId& id) {
  return std::string(InfoOf(id.Which).Name) + ":" + std::to_string(id.Row);
}

RowInfo DescribeRow(const Catalogues& catalogues, const RowId& id) {
  switch (id.Which) {
    case Catalogue::kMeter:
      return Describe(RowAt(catalogues.MeterItems, id.Row), kReportLayouts[1]);
    case Catalogue::kAnalog:
      return Describe(RowAt(catalogues.AnalogItems, id.Row), kReportLayouts[0]);
    case Catalogue::kTune:
      return Describe(RowAt(catalogues.TuneItems, id.Row));
    case Catalogue::kSys: {
      RowInfo info = Describe(RowAt(catalogues.SysItems, id.Row), kReportLayouts[2]);
      if (id.Row == kStampRow) info.Kind = RowKind::kText;
      return info;
    }
    case Catalogue::kBitOut:
      return Describe(RowAt(catalogues.BoutItems, id.Row), kReportLayouts[3]);
    case Catalogue::kBitIn:
      return Describe(RowAt(catalogues.BinItems, id.Row), kReportLayouts[4]);
  }
  return {};
}

RowKind KindOf(const Catalogues& catalogues, const RowId& id) {
  if (id.Which == Catalogue::kBitOut || id.Which == Catalogue::kBitIn) return RowKind::kBit;
  if (id.Which == Catalogue::kSys) {
    return id.Row == kStampRow ? RowKind::kText : RowKind::kNumber;
  }
  if (id.Which != Catalogue::kTune) return RowKind::kNumber;
  return RowAt(catalogues.TuneItems, id.Row).Format.empty() ? RowKind::kText : RowKind::kNumber;
}

}  // namespace logbook::insight
