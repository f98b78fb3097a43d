// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/HandshakeCell.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/TestServices.h"

namespace logbook {
namespace {

double ValueOf(const std::string& text) {
  test::TestCell cell;
  cell.text = text;
  return CellValue(cell);
}

TEST(CellValue, IsTheNumberThatTheTextBeginsWith) {
  for (const auto& [text, value] : {std::pair("", 0.0),
                                    {"0", 0.0},
                                    {"x", 0.0},
                                    {" 2", 2.0},
                                    {"9 ", 9.0},
                                    {"1.0", 1.0},
                                    {"&H9", 9.0},
                                    {"1.5", 1.5}}) {
    EXPECT_EQ(ValueOf(text), value) << '"' << text << '"';
  }
}

TEST(CellValue, ANumberTooLargeForADoubleIsAnotherThanAllThatHaveAMeaning) {
  const std::string digits(400, '1');
  for (const std::string& text :
       {std::string("1e999"), std::string("-1e999"), std::string("9e99999999999999999999"), digits,
        "-" + digits, std::string(400, '9') + ".5", "&H" + std::string(400, 'F')}) {
    const double value = ValueOf(text);
    for (const double meaning : {0, 1, 2, 9}) EXPECT_NE(value, meaning) << text;
  }
}

TEST(CellValue, AFailingCellPassesItsErrorOn) {
  test::TestCell cell;
  cell.fails_on_read = true;
  EXPECT_THROW(CellValue(cell), RunTimeError);
}

}  // namespace
}  // namespace logbook
