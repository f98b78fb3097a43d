// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TextTable.h"

#include <gtest/gtest.h>

namespace logbook::insight {
namespace {

TEST(TextTable, ColumnsAreAsWideAsTheirWidestCell) {
  TextTable table({"Item", ">Days", "Log"});
  table.Add({"Clean Cones", "7", "26010100"});
  table.Add({"\xC2\xB5-Torch", "-120"});
  EXPECT_EQ(table.Text(),
            "Item         Days  Log\n"
            "Clean Cones     7  26010100\n"
            "\xC2\xB5-Torch      -120\n");
}

TEST(TextTable, ACellIsOneLine) {
  TextTable table({"a", "b"});
  table.Add({"x\r\ny\tz", "1", "dropped"});
  EXPECT_EQ(table.Text(), "a       b\nx  y z  1\n");
}

TEST(TextTable, ALineOfItsOwnWidensNoColumn) {
  TextTable table({"", ">"});
  table.AddLine("A heading that is long");
  table.Add({"a", "1"});
  table.Add({"b", "20"});
  EXPECT_EQ(table.Text(), "A heading that is long\na   1\nb  20\n");
}

}  // namespace
}  // namespace logbook::insight
