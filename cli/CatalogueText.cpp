// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "CatalogueText.h"

#include <cstddef>

namespace logbook {
namespace {

std::string Fields(const ItemRecord& item) {
  return item.Name + '\t' + item.Unit + '\t' + item.Format + '\t' + std::to_string(item.Group);
}

std::string Fields(const TuneItemRecord& item) {
  return item.Name + '\t' + item.Unit + '\t' + item.Format + '\t' + item.File + '\t' + item.Var +
         '\t' + std::to_string(item.Group);
}

std::string Fields(const BitItemRecord& item) {
  return item.Name + '\t' + item.Label0 + '\t' + item.Label1 + '\t' + std::to_string(item.Group) +
         '\t' + std::to_string(item.Word) + '\t' + std::to_string(item.Mask);
}

std::string Fields(const std::string& sentence) {
  return sentence;
}

template <typename Array>
std::string Table(std::string_view header, const Array& array, int rows) {
  std::string text = "Row\t" + std::string(header) + '\n';
  for (int row = 0; row < rows; ++row) {
    text += std::to_string(row) + '\t' + Fields(array[static_cast<std::size_t>(row)]) + '\n';
  }
  return text;
}

constexpr std::string_view kItemFields = "Name\tUnit\tFormat\tGroup";
constexpr std::string_view kTuneFields = "Name\tUnit\tFormat\tFile\tVar\tGroup";
constexpr std::string_view kBitFields = "Name\tLabel0\tLabel1\tGroup\tWord\tMask";

}  // namespace

std::string CatalogueText(const Catalogues& catalogues, std::string_view name) {
  if (name == "items") return Table("Name", catalogues.ItemHeaders, kItemHeaderCount);
  if (name == "meter") return Table(kItemFields, catalogues.MeterItems, kMeterRowCount);
  if (name == "analog") return Table(kItemFields, catalogues.AnalogItems, kAnalogRowCount);
  if (name == "tune") return Table(kTuneFields, catalogues.TuneItems, kTuneRowCount);
  if (name == "sys") return Table(kItemFields, catalogues.SysItems, kSysRowCount);
  if (name == "bout") return Table(kBitFields, catalogues.BoutItems, kBoutRowCount);
  if (name == "bin") return Table(kBitFields, catalogues.BinItems, kBinRowCount);
  return {};
}

}  // namespace logbook
