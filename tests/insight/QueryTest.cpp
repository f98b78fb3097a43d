// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Query.h"

#include <gtest/gtest.h>

#include "AllCatalogues.h"
#include "insight/DatePart.h"
#include "insight/QueryMatch.h"
#include "insight/RowNames.h"
#include "insight/TextWords.h"
#include "resources/Resources.h"

namespace logbook::insight {
namespace {

using test::AllCatalogues;

// A log with a few values of every kind.
SearchedLog Log() {
  LogFiles files;
  const auto add = [&](std::string name, std::string bytes) {
    const std::uint64_t size = bytes.size();
    files.Files.push_back({std::move(name), LogFile::Kind::kFile, std::move(bytes), size});
  };
  add("logfile.ini",
      "[LogFile]\r\nDate=03/15/2026 08:30:00\r\n[OPTION]\r\nLENS=1\r\nSecurity=1\r\nSTYLEB=2\r\n"
      "[Maintenance]\r\nItem1=1\r\n");
  add("comment.txt", "Cones cleaned, torch OK\r\nsecond line\r\n");
  add("errlog.txt", "2026/03/15  E0512 Autosampler does not answer.\r\n");
  add("aall.txt", "21.5\r\n1700\r\n");
  add("auser.txt", "0\r\n\r\n5\r\n");
  add("PARAMVAR.MAC", "XPOS=5.55\r\nInstrumentName$=\"Bench 3\"\r\n");
  std::string words = "0001";
  for (int i = 1; i < 16; ++i) words += ",0000";
  add("bin.txt", words);
  SearchedLog log;
  log.Reading = ReadLog(*CodePage::Find(1252), AllCatalogues(), files);
  log.Words = WordsOf(SearchedText(*CodePage::Find(1252), AllCatalogues(), files, log.Reading));
  return log;
}

bool Found(const std::string& query) {
  return Matches(ParseQuery(AllCatalogues(), query), Log());
}

TEST(Query, FindsTheLogByEachKindOfCondition) {
  for (const char* query : {"",
                            "  ",
                            "cones",
                            "CONES cleaned",
                            "\"cones cleaned\"",
                            "\"Cones, cleaned\"",
                            "con*",
                            "\"cones clea\"*",
                            "autosampler",
                            "E0512",
                            "\"does not answer\"",
                            "bench",
                            "\"bench 3\"",
                            "after:2026",
                            "after:2026-03-15",
                            "before:2026-03-16",
                            "on:2026-03",
                            "on:2026-03-15",
                            "on:2026-03-15T08:30",
                            "on:\"2026-03-15 08:30\"",
                            "after:2026-03-15T08:30:00",
                            "tick:\"Clean Cones\"",
                            "tick:\"clean co\"",
                            "tick:1",
                            "option:LENS=1",
                            "option:lens",
                            "option:STYLEB>1",
                            "option:AFC=0",
                            "auto:no",
                            "analog:1>1699.5",
                            "analog:1=1700",
                            "analog:0!=3",
                            "meter:0=0",
                            "meter:0",
                            "meter:1:nonumber",
                            "meter:28:na",
                            "sys:0:na OR "
                            "sys:0:missing",
                            "tune:\"Smpl Depth\"=5.55",
                            "tune:\"smpl d\">5mm",
                            "tune:106>=\"5.5 mm\"",
                            "tune:106 > 5 mm",
                            "tune:106 > 5 cones",
                            "tune:\"Instrument Name\"=\"bench 3\"",
                            "tune:145!=other",
                            "state:na",
                            "state:short",
                            "NOT torches",
                            "cones AND torch",
                            "nothing OR torch",
                            "(nothing OR cones) second",
                            "NOT (nothing)",
                            "NOT NOT cones",
                            "nothing cones OR torch",

                            "cones \"OR\" OR torch"}) {
    EXPECT_TRUE(Found(query)) << query;
  }
}

TEST(Query, LeavesTheLogOutWhereAConditionFails) {
  for (const char* query : {"con",
                            "\"cones torch\"",
                            "\"line autosampler\"",
                            "\"cleaned cones\"",
                            "after:2027",
                            "before:2026-03-15",
                            "on:2026-04",
                            "after:2026-03-15T08:30:01",
                            "tick:0",
                            "tick:\"Change Cones\"",
                            "option:AFC",
                            "option:LENS!=1",
                            "auto:yes",
                            "analog:1>1700",
                            "analog:1<1700",
                            "analog:2=0",
                            "meter:1=0",
                            "meter:1!=7",
                            "meter:0:na",
                            "tune:145=\"bench 4\"",
                            "tune:145!=\"BENCH 3\"",
                            "NOT cones",
                            "cones nothing",
                            "nothing OR nobody",
                            "state:ok NOT state:na",
                            "NOT (cones OR nothing)"}) {
    EXPECT_FALSE(Found(query)) << query;
  }
}

TEST(Query, BitsAreComparedToTheirReadings) {
  for (int row = 0; row < kBinRowCount; ++row) {
    const BitItemRecord& item = RowAt(AllCatalogues().BinItems, row);
    if (item.Word != 1) continue;
    const std::string name = "bin:" + std::to_string(row);
    EXPECT_TRUE(Found(name + "=0"));
    EXPECT_TRUE(Found(name + "=\"" + item.Label0 + "\""));
    EXPECT_FALSE(Found(name + "=\"" + item.Label1 + "\""));
    EXPECT_TRUE(Found(name + "!=\"" + item.Label1 + "\""));
    return;
  }
  FAIL() << "no row of word 1";
}

struct Wrong {
  const char* query;
  std::size_t place;
  const char* sentence;
  const char* near;  // one of the names that are offered; empty if none is
};

TEST(Query, WrongQueriesNameThePlaceAndWhatWasExpected) {
  for (const Wrong& wrong : {
           Wrong{"(cones", 6, "a \")\" is expected for the \"(\" at character 1", ""},
           Wrong{"cones)", 5, "there is no \"(\" before this \")\"", ""},
           Wrong{"cones OR", 8, "a word, a \"phrase\", a condition or \"(\" is expected here", ""},
           Wrong{"OR cones", 0, "a word, a \"phrase\", a condition or \"(\" is expected here", ""},
           Wrong{"()", 1, "a word, a \"phrase\", a condition or \"(\" is expected here", ""},
           Wrong{"NOT", 3, "a word, a \"phrase\", a condition or \"(\" is expected here", ""},
           Wrong{"a \"b", 2, "the quote that begins here does not end", ""},
           Wrong{"---", 0, "there is no letter or digit to look for in this", ""},
           Wrong{"after:soon", 6,
                 "a date is expected here: YYYY, YYYY-MM, YYYY-MM-DD or YYYY-MM-DDTHH:MM", ""},
           Wrong{"on:2026-02-30", 3,
                 "a date is expected here: YYYY, YYYY-MM, YYYY-MM-DD or YYYY-MM-DDTHH:MM", ""},
           Wrong{"tick:\"Clean Cone Plug\"", 5,
                 "no maintenance item begins with \"Clean Cone Plug\"", "Clean Cones"},
           Wrong{"tick:clean", 5, "3 maintenance items begin with \"clean\"", "Clean Cones"},
           Wrong{"option:LENZ=1", 7, "no option is called \"LENZ\"", "LENS"},
           Wrong{"option:LENS=x", 12, "a number is expected here", ""},
           Wrong{"auto:perhaps", 5, "\"yes\" or \"no\" is expected here", ""},
           Wrong{"state:fine", 6, "a state is expected here", "na"},
           Wrong{"tune:Oxyde>1", 5, "no label of catalogue tune begins with \"Oxyde\"", "Oxide"},
           Wrong{"analog:300>1", 7, "catalogue analog has the rows 0 to 214", ""},
           Wrong{"analog:", 7, "a label or a row number is expected here", ""},
           Wrong{"tune:106>", 9, "a number is expected here", ""},
           Wrong{"tune:106>5kg", 9, "the unit of \"Smpl Depth\" is \"mm\"", ""},
           Wrong{"tune:159>5kg", 9, "\"AMU Gain\" has no unit", ""},
           Wrong{"tune:145>5", 8,
                 "\"Instrument Name\" is no number, so \"=\" or \"!=\" is expected here", ""},
           Wrong{"meter:0:fine", 8, "a state is expected here", "ok"},
           Wrong{"metre:0>1", 0,
                 "no field is called \"metre\"; to look for these words, put them in quotes",
                 "meter"},
           Wrong{"\"a\"b", 3, "a blank is expected here", ""},
       }) {
    try {
      ParseQuery(AllCatalogues(), wrong.query);
      ADD_FAILURE() << wrong.query << " was read";
    } catch (const QueryError& error) {
      EXPECT_EQ(error.Place(), wrong.place) << wrong.query;
      EXPECT_STREQ(error.what(), wrong.sentence) << wrong.query;
      if (*wrong.near == '\0') {
        EXPECT_TRUE(error.Near().empty()) << wrong.query;
      } else {
        EXPECT_NE(std::find(error.Near().begin(), error.Near().end(), wrong.near),
                  error.Near().end())
            << wrong.query;
      }
    }
  }
}

TEST(Query, ErrorIsMarkedUnderItsCharacter) {
  const std::string query = "\xC2\xB5 tune:Oxyde";
  try {
    ParseQuery(AllCatalogues(), query);
    FAIL();
  } catch (const QueryError& error) {
    EXPECT_EQ(Explain(error, query),
              "character 8: no label of catalogue tune begins with \"Oxyde\"\n"
              "  \xC2\xB5 tune:Oxyde\n"
              "         ^\n"
              "near: \"Oxide\"\n");
  }
}

TEST(Query, WhatIsToldOfAQueryStaysInItsLines) {
  const std::string query = "option:\"a\nb\x1B\"";
  try {
    ParseQuery(AllCatalogues(), query);
    FAIL();
  } catch (const QueryError& error) {
    const std::string told = Explain(error, query);
    EXPECT_TRUE(told.starts_with("character 8: no option is called \"a b \"\n")) << told;
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 4) << told;
  }
}

TEST(Query, AnyTextIsReadOrRefusedWithAPlaceInside) {
  const std::string good = "(cones OR \"a b\"*) after:2026-03 tune:\"Oxide\">=1.5% NOT tick:1";
  const std::string signs = "()\":*<>=! \t\xC3\xB5NO";
  for (std::size_t i = 0; i <= good.size(); ++i) {
    for (const char sign : signs) {
      for (const std::string& text :
           {good.substr(0, i), good.substr(0, i) + sign + good.substr(i), sign + good.substr(i)}) {
        try {
          ParseQuery(AllCatalogues(), text);
        } catch (const QueryError& error) {
          EXPECT_LE(error.Place(), text.size()) << text;
          EXPECT_NE(Explain(error, text), "");
        }
      }
    }
  }
}

TEST(Query, NestingHasALimit) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '(') + "cones" + std::string(depth, ')');
  };
  EXPECT_NO_THROW(ParseQuery(AllCatalogues(), nested(198)));
  EXPECT_NO_THROW(ParseQuery(AllCatalogues(), nested(199)));
  EXPECT_THROW(ParseQuery(AllCatalogues(), nested(200)), QueryError);
  const std::string deep(100000, '(');
  EXPECT_THROW(ParseQuery(AllCatalogues(), deep), QueryError);
}

// --- dates, words, names --------------------------------------------------------------------

TEST(DatePart, EndsWhereTheNextPartBegins) {
  using namespace std::chrono;
  const auto part = [](const char* text) { return *ParseDatePart(text); };
  EXPECT_EQ(part("2024").End, part("2025").Begin);
  EXPECT_EQ(part("2024-12").End, part("2025-01").Begin);
  EXPECT_EQ(part("2024-02-29").End, part("2024-03-01").Begin);
  EXPECT_EQ(part("2024-02-29T23:59").End, part("2024-03-01").Begin);
  EXPECT_EQ(part("2024-02-29 23:59:59").End, part("2024-03-01").Begin);
  for (const char* text : {"", "24", "2025-02-29", "2024-13", "2024-00-01", "2024-1-1",
                           "2024-01-01T24:00", "2024-01-01x10:00", "2024-01-01T10"}) {
    EXPECT_FALSE(ParseDatePart(text)) << text;
  }
}

TEST(TextWords, AreRunsOfLettersAndDigitsInUpperCase) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(WordsOf("L29S001.D, m\xC3\xB6hre \xE2\x80\x93 5\xC2\xB5m"),
            (Words{"L29S001", "D", "M\xC3\x96HRE", "5\xC2\xB5M"}));
  EXPECT_EQ(WordsOf("\xE3\x82\xB3\xE3\x83\xBCn\xE3\x82\xBD"),
            (Words{"\xE3\x82\xB3", "\xE3\x83\xBC", "N", "\xE3\x82\xBD"}));
  EXPECT_EQ(WordsOf("a\xFF"
                    "b\n"),
            (Words{"A", "B"}));
  EXPECT_EQ(WordsOf("2026/11/21 20:11:03, -1.5e3. 1- a/b"),
            (Words{"2026/11/21", "20:11:03", "1.5E3", "1", "A", "B"}));
  EXPECT_EQ(WordsOf(""), Words{});
}

TEST(TextWords, NoPhraseReachesFromOneTextIntoTheNext) {
  const std::vector<std::string> words = WordsOf("one two" + std::string(kTextBreak) + "three");
  EXPECT_TRUE(HoldsPhrase(words, {"ONE", "TWO"}, false));
  EXPECT_FALSE(HoldsPhrase(words, {"TWO", "THREE"}, false));
  EXPECT_TRUE(HoldsPhrase(words, {"ONE", "T"}, true));
  EXPECT_FALSE(HoldsPhrase(words, {"ONE", "T"}, false));
  EXPECT_FALSE(HoldsPhrase(words, {}, false));
}

TEST(RowNames, RowsAreFoundByLabelBeginningAndNumber) {
  const Catalogues& all = AllCatalogues();
  EXPECT_EQ(FindRow(all, "tune:63").Rows, (std::vector<RowId>{{Catalogue::kTune, 63}}));
  EXPECT_EQ(FindRow(all, "Tune:oxide").Rows, (std::vector<RowId>{{Catalogue::kTune, 63}}));
  EXPECT_EQ(FindRow(all, "smpl depth").Rows, (std::vector<RowId>{{Catalogue::kTune, 106}}));
  EXPECT_EQ(FindRow(all, "smpl d").Rows, (std::vector<RowId>{{Catalogue::kTune, 106}}));
  // One label for the value of four lens families.
  EXPECT_EQ(FindRow(all, "analog:HV +550V").Rows.size(), 4U);
  EXPECT_TRUE(FindRow(all, "analog:HV").Rows.empty());
  EXPECT_EQ(FindRow(all, "analog:HV").Near.size(), 5U);
  const RowSearch both = FindRow(all, "Carrier Gas");
  EXPECT_TRUE(both.Rows.empty());
  EXPECT_EQ(both.Problem, "several catalogues have a row \"Carrier Gas\"");
  EXPECT_NE(std::find(both.Near.begin(), both.Near.end(), "tune:Carrier Gas"), both.Near.end());
}

TEST(RowNames, EveryTickIsFoundByItsLabel) {
  for (int item = 0; item < kItemHeaderCount; ++item) {
    EXPECT_EQ(FindTick(TickLabel(item)).Item, item);
    EXPECT_EQ(TickLabel(item), LoadResString(179 + item));
  }
}

}  // namespace
}  // namespace logbook::insight
