// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/F1Report.h"

#include <gtest/gtest.h>

#include "base/RunTimeError.h"

namespace logbook {
namespace {

constexpr SheetEdge kRule{4, 0};

void SelectAll(F1Book& sheet) {
  sheet.SetSelection(-1, -1, -1, -1);
}

TEST(F1Report, ANewSheetIsEmpty) {
  const F1Book sheet;
  EXPECT_EQ(sheet.LastRow(), 0);
  EXPECT_EQ(sheet.LastColumn(), 0);
  EXPECT_EQ(sheet.Text(1, 1), "");
  EXPECT_EQ(sheet.Text(0, -3), "");
  EXPECT_FALSE(sheet.Landscape());
}

TEST(F1Report, ACellHoldsTheTextThatWasPutIntoIt) {
  F1Book sheet;
  sheet.SetText(3, 2, "left");
  sheet.SetText(1, 4, "right");
  sheet.SetText(3, 2, "replaced");
  EXPECT_EQ(sheet.Text(3, 2), "replaced");
  EXPECT_EQ(sheet.Text(1, 4), "right");
  EXPECT_EQ(sheet.Text(2, 2), "");
  EXPECT_EQ(sheet.LastRow(), 3);
  EXPECT_EQ(sheet.LastColumn(), 4);
}

TEST(F1Report, EmptyTextsDoNotExtendTheSheet) {
  F1Book sheet;
  sheet.SetText(2, 2, "x");
  sheet.SetText(9, 9, "");
  EXPECT_EQ(sheet.LastRow(), 2);
  EXPECT_EQ(sheet.LastColumn(), 2);
}

TEST(F1Report, CellsBelowOneAreRefused) {
  F1Book sheet;
  EXPECT_THROW(sheet.SetText(0, 1, "x"), RunTimeError);
  EXPECT_THROW(sheet.SetText(1, 0, "x"), RunTimeError);
  EXPECT_THROW(sheet.SetSelection(0, 1, 1, 1), RunTimeError);
  EXPECT_THROW(sheet.SetSelection(2, 1, 1, 1), RunTimeError);
}

TEST(F1Report, ClearingTheWholeSheetLeavesNoOldContent) {
  F1Book sheet;
  sheet.SetText(5, 1, "old");
  sheet.SetSelection(6, 1, 6, 1);
  sheet.SetBorder({.Top = kRule});
  SelectAll(sheet);
  sheet.ClearSelection();
  EXPECT_EQ(sheet.Text(5, 1), "");
  EXPECT_EQ(sheet.Border(6, 1), CellBorder());
  EXPECT_EQ(sheet.LastRow(), 0);
}

TEST(F1Report, ClearingARangeLeavesTheOtherCells) {
  F1Book sheet;
  for (int row = 1; row <= 3; ++row) sheet.SetText(row, 1, "old");
  sheet.SetSelection(2, 1, 9, 9);
  sheet.ClearSelection();
  EXPECT_EQ(sheet.Text(1, 1), "old");
  EXPECT_EQ(sheet.Text(2, 1), "");
  EXPECT_EQ(sheet.Text(3, 1), "");
}

TEST(F1Report, ABorderChangesTheNamedEdgesOfTheSelectionAlone) {
  F1Book sheet;
  sheet.SetSelection(4, 1, 4, 1);
  sheet.SetBorder({.Top = kRule});
  EXPECT_EQ(sheet.Border(4, 1), CellBorder{.Top = kRule});
  EXPECT_EQ(sheet.Border(3, 1), CellBorder());
  EXPECT_EQ(sheet.Border(4, 2), CellBorder());

  sheet.SetBorder({.Left = SheetEdge{1, 0}});
  EXPECT_EQ(sheet.Border(4, 1), (CellBorder{.Left = {1, 0}, .Top = kRule}));
  EXPECT_EQ(sheet.LastRow(), 4) << "a row with a rule alone belongs to the sheet";
}

TEST(F1Report, AFontOfTheWholeSheetHoldsForCellsToCome) {
  F1Book sheet;
  const CellFont font{"Courier", 9};
  sheet.SetDefaultFont("Arial", 8);
  EXPECT_EQ(sheet.FontOf(1, 1), (CellFont{"Arial", 8}));
  SelectAll(sheet);
  sheet.SetFont(font);
  EXPECT_EQ(sheet.FontOf(1, 1), font);
  EXPECT_EQ(sheet.FontOf(99, 99), font);
  EXPECT_EQ(sheet.DefaultFont(), (CellFont{"Arial", 8}));
}

TEST(F1Report, AFontOfARangeStandsOutUntilTheWholeSheetIsSet) {
  F1Book sheet;
  const CellFont bold{.Name = "Courier", .Size = 9, .Bold = true};
  sheet.SetSelection(1, 1, 1, 2);
  sheet.SetFont(bold);
  EXPECT_EQ(sheet.FontOf(1, 2), bold);
  EXPECT_NE(sheet.FontOf(2, 1), bold);
  SelectAll(sheet);
  sheet.SetFont({"Courier", 9});
  EXPECT_NE(sheet.FontOf(1, 2), bold);
}

TEST(F1Report, ColumnsAreFittedWhenAskedFor) {
  F1Book sheet;
  EXPECT_FALSE(sheet.ColumnIsFitted(1));
  sheet.SetSelection(1, 2, 1, 2);
  sheet.FitColumnWidths(F1Book::Fit::kUsedColumns);
  EXPECT_FALSE(sheet.ColumnIsFitted(1));
  EXPECT_TRUE(sheet.ColumnIsFitted(2));
  EXPECT_FALSE(sheet.ColumnIsFitted(3));
  SelectAll(sheet);
  sheet.FitColumnWidths(F1Book::Fit::kSetDefaultToo);
  EXPECT_TRUE(sheet.ColumnIsFitted(1));
  EXPECT_TRUE(sheet.ColumnIsFitted(77));
}

}  // namespace
}  // namespace logbook
