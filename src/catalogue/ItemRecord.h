// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The shapes of the catalogue rows, and the catalogues: what the bare values of a log's snapshot
// files mean (docs/file-formats.md). Filled once at start-up, read-only from then on. Row numbers
// count from 0 and are file format.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/RunTimeError.h"

namespace logbook {

// A row of the meter, analog or system parameter catalogue.
struct ItemRecord {
  std::string Name;        // label shown to the user
  std::string Unit;        // empty for a value without one
  std::string Format;      // number picture (text/NumberFormat.h); empty for a text value
  std::int16_t Group = 0;  // report section, 1 upward; of its own in each catalogue
};

// A row of the tune catalogue.
struct TuneItemRecord {
  std::string Name;
  std::string Unit;
  std::string Format;  // empty for a text value
  std::string File;    // macro variable file in the log folder, in lower case
  std::string Var;     // variable as it is searched for in that file
  std::int16_t Group = 0;
};

// A row of a bit catalogue.
struct BitItemRecord {
  std::string Name;
  std::string Label0;      // reading of a clear bit
  std::string Label1;      // reading of a set bit
  std::int16_t Group = 0;  // report section, 1 upward
  std::int16_t Word = 0;   // 16-bit word of the snapshot, from 0
  std::uint16_t Mask = 0;  // a single bit
};

// The arrays have fixed capacities; rows that are not filled have all fields empty or 0.
struct Catalogues {
  std::array<ItemRecord, 31> MeterItems;      // rows 0 to 28 filled
  std::array<ItemRecord, 251> AnalogItems;    // rows 0 to 214 filled
  std::array<TuneItemRecord, 171> TuneItems;  // rows 0 to 162 filled
  std::array<ItemRecord, 245> SysItems;       // all rows filled
  std::array<BitItemRecord, 81> BoutItems;    // rows 0 to 57 filled
  std::array<BitItemRecord, 81> BinItems;     // rows 0 to 64 filled
  std::array<std::string, 26> ItemHeaders;    // record sentences of the check items, 0 to 17
};

inline constexpr int kMeterRowCount = 29;
inline constexpr int kAnalogRowCount = 215;
inline constexpr int kTuneRowCount = 163;
inline constexpr int kSysRowCount = 245;
inline constexpr int kBoutRowCount = 58;
inline constexpr int kBinRowCount = 65;
inline constexpr int kItemHeaderCount = 18;

// The builders run once each, in this order. Each fills its arrays from row 0 without a gap and
// touches nothing else; none depends on options, logs or mode, and none raises anything.
void Init_Item(Catalogues& catalogues);
void Init_MeterItem(Catalogues& catalogues);
void Init_AnalogItem(Catalogues& catalogues);
void Init_TuneItem(Catalogues& catalogues);
void Init_SysItem(Catalogues& catalogues);
// BoutItems first, then BinItems.
void Init_BitItem(Catalogues& catalogues);

// All of them in that order.
void FillCatalogues(Catalogues& catalogues);

// The row of a catalogue. Raises kSubscriptOutOfRange outside the array's bounds.
template <typename Array>
auto& RowAt(Array& array, int row) {
  if (row < 0 || row >= static_cast<int>(array.size())) {
    throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
  }
  return array[static_cast<std::size_t>(row)];
}

// True if the bit of a row is set in this word of a snapshot; only the bit pattern counts.
constexpr bool BitIsSet(std::uint16_t word, std::uint16_t mask) {
  return (word & mask) != 0;
}

}  // namespace logbook
