// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "catalogue/ItemRecord.h"

#include <cstddef>

#include "catalogue/AnalogItemsTable.h"
#include "catalogue/BinItemsTable.h"
#include "catalogue/BoutItemsTable.h"
#include "catalogue/MeterItemsTable.h"
#include "catalogue/SysItemsTable.h"
#include "catalogue/TuneItemsTable.h"
#include "resources/ResourceText.h"

namespace logbook {
namespace {

static_assert(kMeterRows.size() == kMeterRowCount);
static_assert(kAnalogRows.size() == kAnalogRowCount);
static_assert(kTuneRows.size() == kTuneRowCount);
static_assert(kSysRows.size() == kSysRowCount);
static_assert(kBoutRows.size() == kBoutRowCount);
static_assert(kBinRows.size() == kBinRowCount);

// String number of the first record sentence.
constexpr int kFirstSentence = 229;

ItemRecord RecordOf(const ItemRow& row) {
  return {ResourceText(row.String), std::string(row.Unit), std::string(row.Format), row.Group};
}

TuneItemRecord RecordOf(const TuneItemRow& row) {
  return {ResourceText(row.String), std::string(row.Unit), std::string(row.Format),
          std::string(row.File),    std::string(row.Var),  row.Group};
}

BitItemRecord RecordOf(const BitItemRow& row) {
  return {ResourceText(row.String),
          ResourceText(StateString(row.Label0)),
          ResourceText(StateString(row.Label1)),
          row.Group,
          row.Word,
          row.Mask};
}

template <typename Table, typename Array>
void Fill(const Table& table, Array& array) {
  static_assert(std::tuple_size_v<Table> <= std::tuple_size_v<Array>);
  for (std::size_t i = 0; i < table.size(); ++i) array[i] = RecordOf(table[i]);
}

}  // namespace

void Init_Item(Catalogues& catalogues) {
  for (int i = 0; i < kItemHeaderCount; ++i) {
    catalogues.ItemHeaders[static_cast<std::size_t>(i)] = ResourceText(kFirstSentence + i);
  }
}

void Init_MeterItem(Catalogues& catalogues) {
  Fill(kMeterRows, catalogues.MeterItems);
}

void Init_AnalogItem(Catalogues& catalogues) {
  Fill(kAnalogRows, catalogues.AnalogItems);
}

void Init_TuneItem(Catalogues& catalogues) {
  Fill(kTuneRows, catalogues.TuneItems);
}

void Init_SysItem(Catalogues& catalogues) {
  Fill(kSysRows, catalogues.SysItems);
}

void Init_BitItem(Catalogues& catalogues) {
  Fill(kBoutRows, catalogues.BoutItems);
  Fill(kBinRows, catalogues.BinItems);
}

void FillCatalogues(Catalogues& catalogues) {
  Init_Item(catalogues);
  Init_MeterItem(catalogues);
  Init_AnalogItem(catalogues);
  Init_TuneItem(catalogues);
  Init_SysItem(catalogues);
  Init_BitItem(catalogues);
}

}  // namespace logbook
