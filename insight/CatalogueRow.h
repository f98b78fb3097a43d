// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rows of the six catalogues by one name and by one number: which catalogue, which row, and
// what label, unit, picture and section it has. Nothing here raises anything for a row that exists.
#pragma once

#include <array>
#include <compare>
#include <optional>
#include <string>
#include <string_view>

#include "catalogue/ItemRecord.h"

namespace logbook::insight {

enum class Catalogue { kMeter, kAnalog, kTune, kSys, kBitOut, kBitIn };

// What there is to know of a catalogue as a whole.
struct CatalogueInfo {
  Catalogue Which;
  std::string_view Name;   // as it is typed and as logbookctl catalogue knows it
  std::string_view Title;  // for a person
  int Rows;                // they count from 0
};

inline constexpr auto kCatalogues = std::to_array<CatalogueInfo>({
    {Catalogue::kMeter, "meter", "Meter", kMeterRowCount},
    {Catalogue::kAnalog, "analog", "Analog", kAnalogRowCount},
    {Catalogue::kTune, "tune", "Tune", kTuneRowCount},
    {Catalogue::kSys, "sys", "System Parameters", kSysRowCount},
    {Catalogue::kBitOut, "bout", "Bit Out", kBoutRowCount},
    {Catalogue::kBitIn, "bin", "Bit In", kBinRowCount},
});

// The entry of a catalogue.
constexpr const CatalogueInfo& InfoOf(Catalogue catalogue) {
  return kCatalogues[static_cast<std::size_t>(catalogue)];
}

// The catalogue of this name, without regard to case; nothing if there is none.
std::optional<Catalogue> FindCatalogue(std::string_view name);

// One row of one catalogue.
struct RowId {
  Catalogue Which = Catalogue::kMeter;
  int Row = 0;  // from 0
  auto operator<=>(const RowId&) const = default;
};

// All rows of all catalogues stand in one line, meter row 0 first: the place of a row there, from
// 0, and back.
constexpr int PlaceOf(const RowId& id) {
  int place = id.Row;
  for (const CatalogueInfo& each : kCatalogues) {
    if (each.Which < id.Which) place += each.Rows;
  }
  return place;
}
inline constexpr int kAllRows = PlaceOf({Catalogue::kBitIn, kBinRowCount});
RowId RowAtPlace(int place);

// "analog:33".
std::string NameOf(const RowId& id);

enum class RowKind { kNumber, kText, kBit };

struct RowInfo {
  RowKind Kind = RowKind::kNumber;
  std::string Label;
  std::string Unit;     // empty for a row without one
  std::string Format;   // number picture (text/NumberFormat.h); empty for texts and bits
  std::string Section;  // heading of its report section without the colon; for tune rows the kind
  std::string Label0;   // of a bit row: its reading when clear and when set
  std::string Label1;
};

// What a catalogue says of a row.
RowInfo DescribeRow(const Catalogues& catalogues, const RowId& id);

// The kind alone.
RowKind KindOf(const Catalogues& catalogues, const RowId& id);

}  // namespace logbook::insight
