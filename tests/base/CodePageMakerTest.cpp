// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/TestMachine.h"

namespace logbook::test {
namespace {

constexpr char kGoodPage[] = "page 932\nleads 81-82\ntrails 40-7E 80-FC\n";

// True if the maker takes this page and these similar characters.
bool Takes(const std::string& page, const std::string& similar = "") {
  const TestMachine machine;
  machine.Put("C:\\page.txt", page);
  machine.Put("C:\\bestfit.tsv", similar);
  const std::string folder = machine.Native("C:\\");
  const std::string command = std::string(MAKE_CODE_PAGES) + " " + folder + "out.cpp " + folder +
                              "bestfit.tsv " + folder + "page.txt 2>/dev/null";
  return std::system(command.c_str()) == 0;
}

TEST(CodePageMakerTest, RunsRangesAndReadOnlyCodesAreTaken) {
  const std::string page = kGoodPage;
  EXPECT_TRUE(Takes(page));
  EXPECT_TRUE(Takes(page + "# comment\n\n8140\t亜唖\nrange 8180 8182 E000\n"));
  EXPECT_TRUE(Takes(page + "8140\t亜\n8240\t亜\nreads 8240 8240\n"));
  EXPECT_TRUE(Takes(page, "932\tU+00A5\t5c\n"));
}

TEST(CodePageMakerTest, ALineThatCannotBeReadOrDoesNotFitIsRefused) {
  const char* lines[] = {
      "rubbish",  "8140 亜", "xx\t亜",     "8340\t亜",           "817F\t亜",           "20\t亜",
      "81\t亜",   "8140\t😀", "8140\t\xFF", "8140\t亜\n8140\t唖", "8140\t亜\n8240\t亜", "range 8140",
      "leads 81",
  };
  for (const char* line : lines) EXPECT_FALSE(Takes(kGoodPage + std::string(line) + "\n")) << line;
  for (const char* similar : {"932", "950\tU+00A5\t5c", "932\t00A5\t5c", "932\tU+00A5\tzz"}) {
    EXPECT_FALSE(Takes(kGoodPage, similar + std::string("\n"))) << similar;
  }
}

}  // namespace
}  // namespace logbook::test
