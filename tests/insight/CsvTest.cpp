// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Csv.h"

#include <gtest/gtest.h>

#include <limits>

namespace logbook::insight {
namespace {

TEST(Csv, FieldsAreQuotedWhereTheyMustBe) {
  CsvLine line;
  line.Add("a").Add("").Add("b,c").Add("say \"x\"").Add("two\r\nlines");
  EXPECT_EQ(line.Take(), "a,,\"b,c\",\"say \"\"x\"\"\",\"two\r\nlines\"\r\n");
  EXPECT_EQ(line.Add("").Add("n").Take(), ",n\r\n");
}

TEST(Csv, AFormulaIsMadeHarmless) {
  for (const char* formula : {"=1+1", "+1", "-1", "@x", "\tx", "\rx", "\nx", "  =1"}) {
    EXPECT_EQ(Neutralised(formula), "'" + std::string(formula));
  }
  for (const char* text : {"", "  ", "a=b", "Cones, cleaned", "'=1", "1-2"}) {
    EXPECT_EQ(Neutralised(text), text);
  }
  CsvLine line;
  EXPECT_EQ(line.AddText("=HYPERLINK(\"x\")").AddNumber(-1.5).Take(),
            "\"'=HYPERLINK(\"\"x\"\")\",-1.5\r\n");
}

TEST(Csv, ANumberReadsBackAsTheSame) {
  for (const double number :
       {0.1, 1.0 / 3, 1e300, -5e-324, 123456789012.0, std::numeric_limits<double>::max()}) {
    EXPECT_EQ(std::stod(ExactNumber(number / 2)), number / 2);
  }
  EXPECT_EQ(ExactNumber(1.05), "1.05");
  EXPECT_EQ(ExactNumber(700), "700");
}

TEST(Csv, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_EQ(CsvLine().Add("a\xFF\xC3z").Add("\u00E4").Take(), "a\uFFFD\uFFFDz,\u00E4\r\n");
  // Half a surrogate pair, as the name of a folder may hold it.
  EXPECT_EQ(CsvLine().Add("a\xED\xA0\x80z").Take(), "a\uFFFD\uFFFD\uFFFDz\r\n");
}

}  // namespace
}  // namespace logbook::insight
