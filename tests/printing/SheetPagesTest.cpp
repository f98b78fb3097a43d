// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/SheetPages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace logbook {
namespace {

using testing::ElementsAre;

TEST(SheetPages, RowsFillAPageBeforeTheNextBegins) {
  const std::vector<double> heights(7, 10.0);
  EXPECT_THAT(BreakRows(heights, 30), ElementsAre(RowBand{0, 3}, RowBand{3, 6}, RowBand{6, 7}));
  EXPECT_THAT(BreakRows(heights, 39.9), ElementsAre(RowBand{0, 3}, RowBand{3, 6}, RowBand{6, 7}));
  EXPECT_THAT(BreakRows(heights, 70), ElementsAre(RowBand{0, 7}));
}

TEST(SheetPages, ARowHigherThanAPageHasAPageOfItsOwn) {
  const std::vector<double> heights = {10, 50, 10};
  EXPECT_THAT(BreakRows(heights, 30), ElementsAre(RowBand{0, 1}, RowBand{1, 2}, RowBand{2, 3}));
}

TEST(SheetPages, ASheetWithoutRowsIsOneEmptyPage) {
  EXPECT_THAT(BreakRows({}, 30), ElementsAre(RowBand{0, 0}));
  EXPECT_THAT(BreakColumns({}, 30, 1), ElementsAre(ColumnBand{0, 0}));
}

TEST(SheetPages, ColumnsThatFitTogetherShareThePage) {
  const std::vector<double> widths = {10, 10, 10};
  EXPECT_THAT(BreakColumns(widths, 30, 1), ElementsAre(ColumnBand{0, 30}));
}

TEST(SheetPages, ColumnsThatDoNotFitGoToTheNextPageWhole) {
  const std::vector<double> widths = {20, 20, 5, 30, 1};
  EXPECT_THAT(BreakColumns(widths, 30, 1), ElementsAre(ColumnBand{0, 20}, ColumnBand{20, 45},
                                                       ColumnBand{45, 75}, ColumnBand{75, 76}));
}

TEST(SheetPages, AColumnWiderThanAPageIsCutBetweenCharacters) {
  const std::vector<double> widths = {70};
  EXPECT_THAT(BreakColumns(widths, 30, 4),
              ElementsAre(ColumnBand{0, 28}, ColumnBand{28, 56}, ColumnBand{56, 70}));
}

TEST(SheetPages, AColumnWiderThanAPageSharesNoPage) {
  const std::vector<double> widths = {5, 40, 5};
  EXPECT_THAT(BreakColumns(widths, 30, 1), ElementsAre(ColumnBand{0, 5}, ColumnBand{5, 35},
                                                       ColumnBand{35, 45}, ColumnBand{45, 50}));
}

TEST(SheetPages, ACharacterWiderThanAPageDoesNotHoldThePrintForEver) {
  const std::vector<double> widths = {20};
  EXPECT_THAT(BreakColumns(widths, 5, 10),
              ElementsAre(ColumnBand{0, 10}, ColumnBand{10, 20}, ColumnBand{20, 20}));
}

}  // namespace
}  // namespace logbook
