// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "resources/Resources.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

#include "resources/StringNumbers.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

static_assert(HasString(112));
static_assert(!HasString(111));

TEST(Resources, StringsAreFoundByNumber) {
  EXPECT_EQ(LoadResString(112), "Maintenance LogBook");
  EXPECT_EQ(LoadResString(223), " !");
  EXPECT_EQ(LoadResString(241), "Rotary Pump Oil was cheked.");
  EXPECT_EQ(LoadResString(245), "Lenses ware cleaned.");
  EXPECT_EQ(LoadResString(514), "Lumarin:");
}

TEST(Resources, MissingNumberReadsAsEmpty) {
  EXPECT_EQ(LoadResString(99999), "");
}

TEST(Resources, NumbersAscendWithoutADouble) {
  int last = 0;
  for (const StringResource& each : AllStrings()) {
    EXPECT_LT(last, each.number);
    EXPECT_FALSE(each.text.empty()) << each.number;
    EXPECT_TRUE(HasString(each.number)) << each.number;
    last = each.number;
  }
  EXPECT_GT(last, 1402);
}

TEST(Resources, CustomResourceIsFoundWithoutRegardToCase) {
  const auto data = LoadResData("idres_logbook_arrange", "logbook_res");
  ASSERT_TRUE(data.has_value());
  EXPECT_TRUE(data->starts_with("0,0,11145,6825"));
  EXPECT_EQ(data->substr(data->size() - 2), std::string_view("\0\0", 2));
  EXPECT_FALSE(LoadResData("other", "LOGBOOK_RES").has_value());
}

struct Block {
  int first = 0, last = 0;
  std::string heading;
  bool operator==(const Block&) const = default;
};

void PrintTo(const Block& block, std::ostream* out) {
  *out << block.first << "-" << block.last << " " << block.heading;
}

// The blocks of a strings file as the list on its top has them ("#   FIRST-LAST  HEADING"), and as
// they stand below their headings.
struct Blocks {
  std::vector<Block> listed, found;
};

Blocks BlocksOf(const std::string& file) {
  std::ifstream in(std::string(RESOURCE_DIR) + "/" + file, std::ios::binary);
  const std::regex list("#   +([0-9]+)-([0-9]+) +(.*)"), text("([0-9]+)\t.*"), comment("# (.*)");
  Blocks blocks;
  std::string line, heading;
  bool begins = false;
  std::smatch match;
  while (std::getline(in, line)) {
    if (std::regex_match(line, match, list)) {
      blocks.listed.push_back({std::stoi(match[1]), std::stoi(match[2]), match[3]});
    } else if (std::regex_match(line, match, comment)) {
      heading = match[1];
      begins = true;
    } else if (std::regex_match(line, match, text)) {
      if (begins) blocks.found.push_back({std::stoi(match[1]), 0, heading});
      if (!blocks.found.empty()) blocks.found.back().last = std::stoi(match[1]);
      begins = false;
    }
  }
  return blocks;
}

TEST(Resources, EachStringsFileListsItsBlocksOnTop) {
  for (const char* file : {"strings.txt", "catalogue_strings.txt"}) {
    const Blocks blocks = BlocksOf(file);
    EXPECT_GT(blocks.listed.size(), 5U) << file;
    EXPECT_EQ(blocks.listed, blocks.found) << file;
  }
}

// The status of the resource maker for this strings file.
int MakeWith(const std::string& strings) {
  test::TestMachine disk;
  disk.Put("C:\\strings.txt", strings);
  disk.Put("C:\\arrange.txt", "0,0,1,1\n");
  const std::string folder = disk.Native("C:\\");
  return std::system((std::string(MAKE_RESOURCES) + " " + folder + "out.h " + folder + "out.cpp " +
                      folder + "arrange.txt " + folder + "strings.txt 2>/dev/null")
                         .c_str());
}

TEST(ResourceMaker, TakesNumbersTextsCommentsAndEmptyLines) {
  EXPECT_EQ(MakeWith("# comment\n\n1\tone\n2\t two \n"), 0);
}

TEST(ResourceMaker, RefusesADoubleNumberAMissingTextAndAnyOtherLine) {
  for (const char* bad : {"1\tone\n1\tagain\n", "1\t\n", "1 one\n", "one\ttext\n", "-1\ttext\n"})
    EXPECT_NE(MakeWith(bad), 0) << bad;
}

}  // namespace
}  // namespace logbook
