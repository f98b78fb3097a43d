// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/MacroLookup.h"

#include <gtest/gtest.h>

#include <random>

#include "AllCatalogues.h"
#include "catalogue/CatalogueRows.h"
#include "snapshot/MacroFile.h"

namespace logbook::insight {
namespace {

using test::AllCatalogues;

// Lines of variables, switches, parts of them, other letters and other line ends.
std::string RandomMacro(std::mt19937_64& random) {
  static const char* const kPieces[] = {"OPT_COLOPGS", "CLMD",     "clmd", "=",  "=1",
                                        " = 2",        "\"x\"",    "\r\n", "\n", "\r",
                                        "\xB5",        "\x83\x5C", "\x83", "]",  "OPT_"};
  std::string text;
  for (int i = 0; i < 120; ++i) {
    const TuneItemRecord& item = AllCatalogues().TuneItems[random() % kTuneRowCount];
    std::string piece = random() % 2 == 0 ? item.Var : kPieces[random() % std::size(kPieces)];
    if (random() % 8 == 0) piece = piece.substr(0, random() % (piece.size() + 1));
    if (random() % 4 == 0) {
      for (char& byte : piece)
        byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte | 32) : byte;
    }
    text += piece;
    if (random() % 3 == 0) text += "=" + std::to_string(i) + "\r\n";
  }
  return text;
}

TEST(MacroLookup, FindsTheLinesThatTheReaderOfOneRowFinds) {
  MacroLookup lookup(AllCatalogues());
  std::mt19937_64 random(7);
  int values = 0, switches = 0;
  for (int round = 0; round < 200; ++round) {
    const CodePage& page = *CodePage::Find(round % 2 == 0 ? 1252 : 932);
    const std::string text = RandomMacro(random);
    const std::vector<std::string> assignments = AssignmentsIn(page, text);
    for (const std::string_view file : kMacroFiles) {
      const MacroLookup::Lines lines = lookup.Find(page, file, text);
      for (const auto& [row, views] : lines.Rows) {
        const TuneItemRecord& item = RowAt(AllCatalogues().TuneItems, row);
        const MacroLines expected = FindMacroLines(assignments, item.Var);
        EXPECT_EQ(item.File, file);
        EXPECT_EQ(views.Value, expected.Value) << item.Var;
        EXPECT_EQ(views.ColOpgs, expected.ColOpgs) << item.Var;
        EXPECT_EQ(views.Clmd, expected.Clmd) << item.Var;
        values += expected.Value.empty() ? 0 : 1;
        switches += expected.Clmd.empty() ? 0 : 1;
      }
    }
  }
  EXPECT_GT(values, 1000);
  EXPECT_GT(switches, 1000);
}

TEST(MacroLookup, OfALongLineTheBeginningCounts) {
  MacroLookup lookup(AllCatalogues());
  const CodePage& page = *CodePage::Find(1252);
  const std::string blanks(kLongestMacroLine, ' ');
  for (const std::string& text : {blanks + "XPOS=1\r\n", "=" + blanks + "XPOS\r\n",
                                  "XPOS=2" + blanks + "YPOS\r\nZPOS=3\r\n"}) {
    const std::vector<std::string> assignments = AssignmentsIn(page, text);
    const MacroLookup::Lines lines = lookup.Find(page, "paramvar.mac", text);
    for (const auto& [row, views] : lines.Rows) {
      const TuneItemRecord& item = RowAt(AllCatalogues().TuneItems, row);
      EXPECT_EQ(views.Value, FindMacroLines(assignments, item.Var).Value) << item.Var;
    }
  }
}

}  // namespace
}  // namespace logbook::insight
