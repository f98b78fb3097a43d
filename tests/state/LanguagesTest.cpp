// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The languages as data: their texts against the English ones, the code pages and the columns of
// the reports; and which of them a run speaks.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "reports/ReportLayouts.h"
#include "resources/ResourceText.h"
#include "resources/Resources.h"
#include "state/LanguageChoice.h"
#include "support/EnvironmentVariable.h"
#include "support/TestMachine.h"

namespace logbook {
namespace {

// Leaves the tests behind it in English.
class Languages : public testing::Test {
 protected:
  ~Languages() override { ChooseLanguage("en"); }

  static std::vector<std::string> Ids() {
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < LanguageCount(); ++i) ids.emplace_back(LanguageAt(i).id);
    return ids;
  }
  static std::vector<const CodePage*> PagesOf(const Language& language) {
    std::vector<const CodePage*> pages;
    for (const int number : CodePage::Numbers()) {
      if (IsWrittenIn(language, number)) pages.push_back(CodePage::Find(number));
    }
    return pages;
  }
};

TEST_F(Languages, ThereAreEnglishGermanAndJapanese) {
  EXPECT_EQ(Ids(), (std::vector<std::string>{"en", "de", "ja"}));
  EXPECT_EQ(CurrentLanguage().id, "en");
  EXPECT_TRUE(ChooseLanguage("DE"));
  EXPECT_EQ(LoadResString(118), "Beenden");
  EXPECT_FALSE(ChooseLanguage("xx"));
  EXPECT_EQ(CurrentLanguage().id, "de");
  EXPECT_EQ(LoadResString(118, 0), "Exit");
}

TEST_F(Languages, EachHasTheNumbersOfEnglishAndNoOthers) {
  std::vector<std::vector<int>> numbers;
  for (const std::string& id : Ids()) {
    ASSERT_TRUE(ChooseLanguage(id));
    std::vector<int>& of_language = numbers.emplace_back();
    for (const StringResource& each : AllStrings()) of_language.push_back(each.number);
    EXPECT_EQ(of_language, numbers.front()) << id;
  }
  EXPECT_GT(numbers.front().size(), 1000U);
}

TEST_F(Languages, EachTextHasThePlacesOfTheEnglishOne) {
  const std::regex place("%[1-9]|&[PN]/|\\|.*");
  const auto places = [&](const std::string& text) {
    std::multiset<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), place), end; it != end; ++it)
      found.insert(it->str());
    return found;
  };
  for (const std::string& id : Ids()) {
    ASSERT_TRUE(ChooseLanguage(id));
    for (const StringResource& each : AllStrings()) {
      EXPECT_EQ(places(std::string(each.text)), places(std::string(LoadResString(each.number, 0))))
          << id << " " << each.number;
    }
  }
  EXPECT_FALSE(places(ResourceText(1424)).empty());
}

// One bracket of an English label has only a similar sign in most pages.
constexpr int kWideBracket = 2764;

TEST_F(Languages, EachIsWrittenWithoutLossInItsCodePages) {
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    const Language& language = LanguageAt(i);
    ASSERT_TRUE(ChooseLanguage(language.id));
    const std::vector<const CodePage*> pages = PagesOf(language);
    EXPECT_FALSE(pages.empty()) << language.id;
    for (const CodePage* page : pages) {
      for (const StringResource& each : AllStrings()) {
        if (i == 0 && each.number == kWideBracket) continue;
        EXPECT_EQ(page->ToUtf8(page->FromUtf8(each.text)), each.text)
            << language.id << " " << page->Number() << " " << each.number;
      }
    }
  }
  EXPECT_EQ(PagesOf(LanguageAt(0)).size(), CodePage::Numbers().size());
}

TEST_F(Languages, EachLabelFitsTheColumnOfItsReport) {
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    ASSERT_TRUE(ChooseLanguage(LanguageAt(i).id));
    Catalogues catalogues;
    FillCatalogues(catalogues);
    const CodePage& page = *PagesOf(LanguageAt(i)).front();
    const auto check = [&](const auto& items, const char* report) {
      const auto layout =
          std::find_if(kReportLayouts.begin(), kReportLayouts.end(),
                       [&](const ReportLayout& each) { return each.ReportFile == report; });
      for (const auto& item : items)
        EXPECT_LE(page.Length(item.Name), layout->NameWidth) << item.Name;
    };
    check(catalogues.AnalogItems, "analog.rpt");
    check(catalogues.MeterItems, "meter.rpt");
    check(catalogues.SysItems, "Sys.rpt");
    check(catalogues.BoutItems, "bitout.rpt");
    check(catalogues.BinItems, "bitin.rpt");
  }
}

// The column chooser finds a tune value by its label.
TEST_F(Languages, TuneLabelsAreEqualOnlyWhereTheEnglishOnesAre) {
  constexpr int kFirst = 2000, kLast = 2155;
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    std::map<std::string_view, std::set<std::string_view>> english;
    for (int number = kFirst; number <= kLast; ++number)
      english[LoadResString(number, i)].insert(LoadResString(number, 0));
    for (const auto& [label, of_english] : english) EXPECT_EQ(of_english.size(), 1U) << label;
  }
}

TEST_F(Languages, AccessKeysStandOnceInTheirMenu) {
  const std::vector<std::vector<int>> menus = {{136, 139, 145, 146, 147, 148, 151},
                                               {140, 141, 142, 143, 144},
                                               {149, 150},
                                               {1420, 1421, 1422, 1423},
                                               {1440, 1441}};
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    for (const std::vector<int>& menu : menus) {
      std::set<char> keys;
      for (const int number : menu) {
        const std::string_view text = LoadResString(number, i);
        const std::size_t mark = text.find('&');
        ASSERT_LT(mark + 1, text.size()) << text;
        EXPECT_TRUE(keys.insert(static_cast<char>(text[mark + 1] | 0x20)).second) << text;
      }
    }
  }
}

TEST_F(Languages, TextsOfThePrintServiceFitItsBuffer) {
  for (std::size_t i = 0; i < LanguageCount(); ++i) {
    for (int number = 1450; number <= 1456; ++number)
      EXPECT_LT(LoadResString(number, i).size() + 11, 260U) << LoadResString(number, i);
  }
}

// The language that is taken where this profile lies beside a program built for `built_in`.
std::string Taken(int code_page, const std::string& profile, const std::string& built_in = "en") {
  const test::TestMachine disk(code_page);
  if (!profile.empty()) disk.Put("C:\\program\\language.cfg", profile);
  TakeLanguage(disk, "C:\\program", built_in);
  return std::string(CurrentLanguage().id);
}

TEST_F(Languages, TheProfileBesideTheProgramNamesTheLanguage) {
  EXPECT_EQ(Taken(1252, "[Language]\r\nUse=de\r\n"), "de");
  EXPECT_EQ(Taken(1250, "[language]\nuse=DE\n"), "de");
  EXPECT_EQ(Taken(932, "[Language]\r\nUse=ja\r\n"), "ja");
  EXPECT_EQ(Taken(1252, "[Language]\r\nUse=en\r\n", "de"), "en");
}

TEST_F(Languages, WithoutOneThatThereIsItIsThatOfTheBuild) {
  for (const char* profile : {"", "[Language]\r\n", "[Language]\r\nUse=\r\n",
                              "[Language]\r\nUse=klingon\r\n", "[Other]\r\nUse=ja\r\n"}) {
    EXPECT_EQ(Taken(1252, profile), "en") << profile;
    EXPECT_EQ(Taken(1252, profile, "de"), "de") << profile;
  }
}

TEST_F(Languages, OneThatTheCodePageCannotHoldIsPassedOver) {
  EXPECT_EQ(Taken(1252, "[Language]\r\nUse=ja\r\n"), "en");
  EXPECT_EQ(Taken(1252, "[Language]\r\nUse=ja\r\n", "de"), "de");
  EXPECT_EQ(Taken(932, "[Language]\r\nUse=de\r\n"), "en");
  EXPECT_EQ(Taken(932, "[Language]\r\nUse=de\r\n", "ja"), "ja");
  EXPECT_EQ(Taken(1251, "", "ja"), "en");
}

TEST_F(Languages, NothingOfTheSessionChoosesOne) {
  const test::EnvironmentVariable lang("LANG", "de_DE.UTF-8");
  const test::EnvironmentVariable all("LC_ALL", "de_DE.UTF-8");
  const test::EnvironmentVariable language("LANGUAGE", "de_DE.UTF-8");
  EXPECT_EQ(Taken(1252, ""), "en");
}

TEST_F(Languages, PlacesOfATextAreFilledOnceAndInAnyOrder) {
  EXPECT_EQ(ResourceText(1424, {"a%1b"}), "This machine has nothing to show a%1b with.");
  EXPECT_EQ(ResourceText(1424, {}), "This machine has nothing to show %1 with.");
  EXPECT_EQ(ResourceText(112, {"a"}), "Maintenance LogBook");
}

}  // namespace
}  // namespace logbook
