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
  std::ifstream in(std::string(RESOURCE_DIR) + "/en/" + file, std::ios::binary);
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

// Makes a language with these strings.
void PutLanguage(const test::TestMachine& disk, const std::string& id, const std::string& strings,
                 const std::string& facts = "name\tOne\npages\tall\ntoolkit\tnone\nmanual\t.\n") {
  const std::string folder = "C:\\" + id + "\\";
  disk.Put(folder + "strings.txt", strings);
  disk.Put(folder + "catalogue_strings.txt", "2000\tMass\n");
  disk.Put(folder + "language.txt", facts);
  for (const char* name :
       {"arrange.txt", "arrange_editor.txt", "arrange_viewer.txt", "arrange_chooser.txt"})
    disk.Put(folder + name, "0,0,1,1\n");
}

// The status of the resource maker for these languages.
int Make(const test::TestMachine& disk, const std::vector<std::string>& languages) {
  const std::string folder = disk.Native("C:\\");
  std::string command = std::string(MAKE_RESOURCES) + " " + folder + "out.h " + folder + "out.cpp";
  for (const std::string& language : languages) command += " " + folder + language;
  return std::system((command + " 2>/dev/null").c_str());
}

int MakeWith(const std::string& strings) {
  const test::TestMachine disk;
  PutLanguage(disk, "one", strings);
  return Make(disk, {"one"});
}

// With these strings in a second language.
int MakeWithTwo(const std::string& first, const std::string& second) {
  const test::TestMachine disk;
  PutLanguage(disk, "one", first);
  PutLanguage(disk, "two", second);
  return Make(disk, {"one", "two"});
}

TEST(ResourceMaker, TakesNumbersTextsCommentsAndEmptyLines) {
  EXPECT_EQ(MakeWith("# comment\n\n1\tone\n2\t two \n"), 0);
}

TEST(ResourceMaker, RefusesADoubleNumberAMissingTextAndAnyOtherLine) {
  for (const char* bad : {"1\tone\n1\tagain\n", "1\t\n", "1 one\n", "one\ttext\n", "-1\ttext\n"})
    EXPECT_NE(MakeWith(bad), 0) << bad;
}

TEST(ResourceMaker, RefusesALanguageThatLacksANumberOrHasOneOfItsOwn) {
  EXPECT_EQ(MakeWithTwo("1\tone\n2\ttwo\n", "1\teins\n2\tzwei\n"), 0);
  EXPECT_NE(MakeWithTwo("1\tone\n2\ttwo\n", "1\teins\n"), 0);
  EXPECT_NE(MakeWithTwo("1\tone\n", "1\teins\n2\tzwei\n"), 0);
}

TEST(ResourceMaker, RefusesALanguageWhoseTextHasOtherPlaces) {
  EXPECT_EQ(MakeWithTwo("1\t%1 of %2\n", "1\tvon %2: %1\n"), 0);
  EXPECT_EQ(MakeWithTwo("1\tPage &P/&N\n", "1\tSeite &P/&N\n"), 0);
  EXPECT_EQ(MakeWithTwo("1\tZip(*.zip)|*.zip\n", "1\tArchiv(*.zip)|*.zip\n"), 0);
  EXPECT_NE(MakeWithTwo("1\t%1 of %2\n", "1\t%1 von\n"), 0);
  EXPECT_NE(MakeWithTwo("1\t%1 of %2\n", "1\t%1 von %3\n"), 0);
  EXPECT_NE(MakeWithTwo("1\tPage &P/&N\n", "1\tSeite &P\n"), 0);
  EXPECT_NE(MakeWithTwo("1\tZip(*.zip)|*.zip\n", "1\tArchiv(*.zip)\n"), 0);
}

TEST(ResourceMaker, RefusesALanguageWithoutOneOfItsFactsOrItsArrangements) {
  const test::TestMachine disk;
  PutLanguage(disk, "one", "1\tone\n", "name\tOne\npages\tall\ntoolkit\tnone\n");
  EXPECT_NE(Make(disk, {"one"}), 0);
  PutLanguage(disk, "two", "1\tone\n");
  EXPECT_EQ(Make(disk, {"two"}), 0);
  disk.Put("C:\\two\\arrange_editor.txt", "");
  EXPECT_NE(Make(disk, {"two"}), 0);
}

}  // namespace
}  // namespace logbook
