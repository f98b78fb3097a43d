// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The catalogues against their golden listings in tests/data/catalogue, one file each: a header
// line, then row number and fields in the record's order, separated by tabs.

#include <gtest/gtest.h>

#include <bit>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "catalogue/AnalogItemsTable.h"
#include "catalogue/BinItemsTable.h"
#include "catalogue/BoutItemsTable.h"
#include "catalogue/ItemRecord.h"
#include "catalogue/MeterItemsTable.h"
#include "catalogue/SysItemsTable.h"
#include "catalogue/TuneItemsTable.h"
#include "resources/Resources.h"

namespace logbook {
namespace {

std::string LineOf(int row, const ItemRecord& item) {
  std::ostringstream line;
  line << row << '\t' << item.Name << '\t' << item.Unit << '\t' << item.Format << '\t'
       << item.Group;
  return line.str();
}

std::string LineOf(int row, const TuneItemRecord& item) {
  std::ostringstream line;
  line << row << '\t' << item.Name << '\t' << item.Unit << '\t' << item.Format << '\t' << item.File
       << '\t' << item.Var << '\t' << item.Group;
  return line.str();
}

std::string LineOf(int row, const BitItemRecord& item) {
  std::ostringstream line;
  line << row << '\t' << item.Name << '\t' << item.Label0 << '\t' << item.Label1 << '\t'
       << item.Group << '\t' << item.Word << '\t' << item.Mask;
  return line.str();
}

std::string LineOf(int row, const std::string& sentence) {
  return std::to_string(row) + '\t' + sentence;
}

std::vector<std::string> GoldenRows(const std::string& name) {
  std::ifstream file(TEST_DATA_DIR "/catalogue/" + name + ".tsv");
  EXPECT_TRUE(file) << name;
  std::vector<std::string> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) rows.push_back(line);
  return rows;
}

// Compares an array with its golden listing; rows behind the filled ones must be empty.
template <typename Array>
void CompareWithGolden(const std::string& name, const Array& array, std::size_t filled) {
  const std::vector<std::string> golden = GoldenRows(name);
  ASSERT_EQ(golden.size(), filled);
  for (std::size_t row = 0; row < array.size(); ++row) {
    const int number = static_cast<int>(row);
    const std::string expected =
        row < filled ? golden[row] : LineOf(number, typename Array::value_type{});
    EXPECT_EQ(LineOf(number, array[row]), expected) << name;
  }
}

class Catalogue : public testing::Test {
 protected:
  Catalogue() { FillCatalogues(catalogues); }
  Catalogues catalogues;
};

TEST_F(Catalogue, MeterItemsAreAsListed) {
  CompareWithGolden("meter", catalogues.MeterItems, 29);
}

TEST_F(Catalogue, AnalogItemsAreAsListed) {
  CompareWithGolden("analog", catalogues.AnalogItems, 215);
}

TEST_F(Catalogue, TuneItemsAreAsListed) {
  CompareWithGolden("tune", catalogues.TuneItems, 163);
}

TEST_F(Catalogue, SysItemsAreAsListed) {
  CompareWithGolden("sys", catalogues.SysItems, 245);
}

TEST_F(Catalogue, BoutItemsAreAsListed) {
  CompareWithGolden("bout", catalogues.BoutItems, 58);
}

TEST_F(Catalogue, BinItemsAreAsListed) {
  CompareWithGolden("bin", catalogues.BinItems, 65);
}

TEST_F(Catalogue, ItemHeadersAreAsListed) {
  CompareWithGolden("items", catalogues.ItemHeaders, 18);
}

TEST_F(Catalogue, ArraysHaveTheirCapacities) {
  EXPECT_EQ(catalogues.MeterItems.size(), 31u);
  EXPECT_EQ(catalogues.AnalogItems.size(), 251u);
  EXPECT_EQ(catalogues.TuneItems.size(), 171u);
  EXPECT_EQ(catalogues.SysItems.size(), 245u);
  EXPECT_EQ(catalogues.BoutItems.size(), 81u);
  EXPECT_EQ(catalogues.BinItems.size(), 81u);
  EXPECT_EQ(catalogues.ItemHeaders.size(), 26u);
}

TEST_F(Catalogue, EachBuilderFillsItsArraysAndTouchesNothingElse) {
  struct Builder {
    void (*build)(Catalogues&);
    std::size_t Filled[7];  // meter, analog, tune, sys, bout, bin, items
  };
  const Builder builders[] = {
      {Init_Item, {0, 0, 0, 0, 0, 0, 18}},        {Init_MeterItem, {29, 0, 0, 0, 0, 0, 0}},
      {Init_AnalogItem, {0, 215, 0, 0, 0, 0, 0}}, {Init_TuneItem, {0, 0, 163, 0, 0, 0, 0}},
      {Init_SysItem, {0, 0, 0, 245, 0, 0, 0}},    {Init_BitItem, {0, 0, 0, 0, 58, 65, 0}},
  };
  const auto named = [](const auto& array) {
    std::size_t count = 0;
    for (const auto& item : array) count += !item.Name.empty();
    return count;
  };
  for (const Builder& builder : builders) {
    Catalogues fresh;
    builder.build(fresh);
    EXPECT_EQ(named(fresh.MeterItems), builder.Filled[0]);
    EXPECT_EQ(named(fresh.AnalogItems), builder.Filled[1]);
    EXPECT_EQ(named(fresh.TuneItems), builder.Filled[2]);
    EXPECT_EQ(named(fresh.SysItems), builder.Filled[3]);
    EXPECT_EQ(named(fresh.BoutItems), builder.Filled[4]);
    EXPECT_EQ(named(fresh.BinItems), builder.Filled[5]);
    std::size_t sentences = 0;
    for (const std::string& sentence : fresh.ItemHeaders) sentences += !sentence.empty();
    EXPECT_EQ(sentences, builder.Filled[6]);
  }
}

template <typename Table>
void CompareLabelsWithStringTable(const Table& table) {
  for (const auto& row : table) {
    EXPECT_EQ(LoadResString(row.String), row.Label) << "row " << row.Row;
  }
}

TEST_F(Catalogue, TheLabelInEachRowIsTheTextOfItsString) {
  CompareLabelsWithStringTable(kMeterRows);
  CompareLabelsWithStringTable(kAnalogRows);
  CompareLabelsWithStringTable(kTuneRows);
  CompareLabelsWithStringTable(kSysRows);
  CompareLabelsWithStringTable(kBoutRows);
  CompareLabelsWithStringTable(kBinRows);
  for (const StateLabel& state : kStateLabels) {
    EXPECT_EQ(LoadResString(state.String), state.Text);
  }
}

TEST_F(Catalogue, SystemParameterRows188And224ShareTheLabelsOf132ByNumber) {
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(kSysRows[188 + i].String, kSysRows[132 + i].String);
    EXPECT_EQ(kSysRows[224 + i].String, kSysRows[132 + i].String);
  }
  std::set<int> numbers;
  for (const ItemRow& row : kSysRows) numbers.insert(row.String);
  EXPECT_EQ(numbers.size(), kSysRows.size() - 8) << "no other rows share a string";
}

TEST_F(Catalogue, RowsThatShareALabelKeepTheirOwnUnitAndFormat) {
  for (const std::size_t slope : {188u, 190u, 224u, 226u}) {
    EXPECT_EQ(catalogues.SysItems[slope].Unit, "V");
    EXPECT_EQ(catalogues.SysItems[slope].Format, "0.000");
    EXPECT_EQ(catalogues.SysItems[slope + 1].Unit, "");
    EXPECT_EQ(catalogues.SysItems[slope + 1].Format, "0.00000");
  }
  EXPECT_EQ(catalogues.SysItems[132].Unit, "");
  EXPECT_EQ(catalogues.SysItems[132].Format, "0.00000");
}

TEST_F(Catalogue, MaskHex8000IsSetInANegativeWord) {
  const BitItemRecord& force_clear = catalogues.BoutItems[4];
  ASSERT_EQ(force_clear.Mask, 32768);
  for (const std::int16_t word : {-1, -32768, -2}) {
    EXPECT_TRUE(BitIsSet(static_cast<std::uint16_t>(word), force_clear.Mask)) << word;
  }
  EXPECT_FALSE(BitIsSet(0x7FFF, force_clear.Mask));
}

TEST_F(Catalogue, EveryMaskIsASingleBitAndEveryWordIsAtMost12) {
  const auto check = [](const auto& array, int rows) {
    for (int row = 0; row < rows; ++row) {
      const BitItemRecord& item = array[static_cast<std::size_t>(row)];
      EXPECT_EQ(std::popcount(item.Mask), 1) << row;
      EXPECT_GE(item.Word, 0) << row;
      EXPECT_LE(item.Word, 12) << row;
    }
  };
  check(catalogues.BoutItems, 58);
  check(catalogues.BinItems, 65);
}

TEST_F(Catalogue, OutputSignalsComeFirstAndHave58RowsInputSignals65) {
  EXPECT_EQ(catalogues.BoutItems[57].Name, "Stop Valve");
  EXPECT_EQ(catalogues.BoutItems[58].Name, "");
  EXPECT_EQ(catalogues.BinItems[64].Name, "RF Cable Connection Error");
  EXPECT_EQ(catalogues.BinItems[65].Name, "");
}

TEST_F(Catalogue, GroupsStayWithinTheSectionsOfTheirReport) {
  const auto check = [](const auto& array, int rows, int last) {
    for (int row = 0; row < rows; ++row) {
      EXPECT_GE(array[static_cast<std::size_t>(row)].Group, 1) << row;
      EXPECT_LE(array[static_cast<std::size_t>(row)].Group, last) << row;
    }
  };
  check(catalogues.MeterItems, 29, 9);
  check(catalogues.AnalogItems, 215, 18);
  check(catalogues.TuneItems, 163, 11);
  check(catalogues.SysItems, 245, 25);
  check(catalogues.BoutItems, 58, 11);
  check(catalogues.BinItems, 65, 9);
}

TEST_F(Catalogue, TuneLabelsOfRows0To155AreAllDifferent) {
  std::map<std::string, int> rows;
  for (int row = 0; row <= 155; ++row) {
    const auto [known, fresh] =
        rows.emplace(catalogues.TuneItems[static_cast<std::size_t>(row)].Name, row);
    EXPECT_TRUE(fresh) << "rows " << known->second << " and " << row;
  }
}

TEST_F(Catalogue, TuneRowsLieInTheirMacroFiles) {
  std::map<std::string, int> rows;
  for (int row = 0; row < kTuneRowCount; ++row) {
    ++rows[catalogues.TuneItems[static_cast<std::size_t>(row)].File];
  }
  EXPECT_EQ(
      rows,
      (std::map<std::string, int>{
          {"sensevar.mac", 62}, {"othervar.mac", 34}, {"resovar.mac", 14}, {"paramvar.mac", 53}}));
}

TEST_F(Catalogue, TuneRowsWithAnEmptyFormatAreThoseWithATextVariable) {
  for (int row = 0; row < kTuneRowCount; ++row) {
    const TuneItemRecord& item = catalogues.TuneItems[static_cast<std::size_t>(row)];
    EXPECT_EQ(item.Format.empty(), item.Var.ends_with('$')) << row;
    EXPECT_EQ(item.Format.empty(), row == 60 || row == 62 || row == 145) << row;
  }
}

TEST_F(Catalogue, TheManufacturingStampHasNeitherUnitNorFormat) {
  EXPECT_EQ(catalogues.SysItems[83].Name, "Log Amp/Manufacturing Stamp");
  EXPECT_EQ(catalogues.SysItems[83].Unit, "");
  EXPECT_EQ(catalogues.SysItems[83].Format, "");
}

TEST_F(Catalogue, SystemParameterRow164HasAFullWidthParenthesis) {
  EXPECT_NE(catalogues.SysItems[164].Name.find("\xEF\xBC\x88"), std::string::npos);
  EXPECT_EQ(catalogues.SysItems[163].Name.find("\xEF\xBC\x88"), std::string::npos);
}

TEST_F(Catalogue, ARowOutsideTheArrayRaisesSubscriptOutOfRange) {
  EXPECT_EQ(RowAt(catalogues.MeterItems, 30).Name, "");
  for (const int row : {-1, 31, 32767}) {
    try {
      RowAt(catalogues.MeterItems, row);
      ADD_FAILURE() << row;
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), ErrorNumber::kSubscriptOutOfRange);
    }
  }
}

}  // namespace
}  // namespace logbook
