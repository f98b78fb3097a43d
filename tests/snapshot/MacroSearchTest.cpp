// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/MacroSearch.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/TestMachine.h"

namespace logbook {
namespace {

const CodePage& Page(int number) {
  return *CodePage::Find(number);
}

TEST(MacroSearchTest, FindsTheLastLineOfEachKind) {
  const MacroSearch search(Page(1252), "xpos=1\r\nOPT_COLOPGS=2\rCLMD=3\nXPOS 4\r\nmyXPos=5");
  EXPECT_EQ(search.Find("XPOS"), (MacroLines{"myXPos=5", "OPT_COLOPGS=2", "CLMD=3"}));
  EXPECT_EQ(search.Find("OPGS"), (MacroLines{"OPT_COLOPGS=2", "", "CLMD=3"}));
  EXPECT_EQ(search.Find("YPOS"), (MacroLines{"", "OPT_COLOPGS=2", "CLMD=3"}));
}

TEST(MacroSearchTest, NoLineHoldsAWordWithALineEnd) {
  const MacroSearch search(Page(1252), "XPOS=1\r\nYPOS=2\r\n");
  for (const char* word : {"1\r\n", "\n", "=1\r\nYPOS"}) {
    EXPECT_EQ(search.Find(word), MacroLines()) << testing::PrintToString(word);
  }
}

TEST(MacroSearchTest, EveryLineHoldsTheEmptyWord) {
  EXPECT_EQ(MacroSearch(Page(1252), "=").Find(""), (MacroLines{"=", "", ""}));
  EXPECT_EQ(MacroSearch(Page(1252), "a=\nb\n").Find(""), (MacroLines{"a=", "", ""}));
}

TEST(MacroSearchTest, EveryLetterIsFoundInEitherCase) {
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    const std::string lower(3, letter);
    const std::string upper(3, static_cast<char>(letter - 'a' + 'A'));
    EXPECT_EQ(MacroSearch(Page(1252), lower + "=1").Find(upper).Value, lower + "=1");
    EXPECT_EQ(MacroSearch(Page(1252), upper + "=1").Find(lower).Value, upper + "=1");
  }
}

TEST(MacroSearchTest, FindsWhatGoingThroughTheLinesFinds) {
  const test::TestMachine machine;
  std::mt19937 random(11);
  const std::string pieces[] = {"XPOS",     "xpos",  "=",    "=5", "OPT_COLOPGS", "opgs",
                                "CLMD",     "clmd=", "\r\n", "\r", "\n",          "\xE4",
                                "\x83\x58", "\x83",  " ",    "X"};
  for (int round = 0; round < 1000; ++round) {
    Machine in_page = machine.machine();
    in_page.code_page = CodePage::Find(round % 2 == 0 ? 1252 : 932);
    std::string bytes;
    for (int piece = 0; piece < 25; ++piece) bytes += pieces[random() % std::size(pieces)];
    machine.Put("C:\\a.mac", bytes);
    const MacroSearch search(*in_page.code_page, bytes);
    for (const char* variable :
         {"XPOS", "OPGS", "OPT_COLOPGS", "CLMD", "LMD=", "X", "", "\xC3\x84"})
      ASSERT_EQ(search.Find(variable), ReadMacroLines(in_page, "C:\\a.mac", variable))
          << testing::PrintToString(bytes) << " " << variable;
  }
}

}  // namespace
}  // namespace logbook
