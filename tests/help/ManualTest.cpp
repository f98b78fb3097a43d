// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The manual as it is shipped, in each language: whole, and about this program.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "help/HelpBook.h"
#include "help/arvbsub.h"
#include "resources/Resources.h"

namespace logbook {
namespace {

namespace fs = std::filesystem;

std::string Read(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in) << path;
  return {std::istreambuf_iterator<char>(in), {}};
}

class Manual : public testing::TestWithParam<std::size_t> {
 protected:
  Manual() { ChooseLanguage(LanguageAt(GetParam()).id); }
  ~Manual() override { ChooseLanguage("en"); }

  static HelpBook BookIn(const fs::path& folder) {
    return ReadHelpBook(Read(folder / "logbook.hhbook"));
  }
  HelpBook Book() const { return BookIn(folder_); }

  const fs::path folder_ =
      (fs::path(MANUAL_DIR) / LanguageAt(GetParam()).manual).lexically_normal();
};

TEST_P(Manual, EveryHelpTopicHasAPageOfItsOwn) {
  const HelpBook book = Book();
  std::set<std::string> files;
  for (const HelpTopic topic :
       {HelpTopic::kMainWindow, HelpTopic::kViewer, HelpTopic::kViewerCE, HelpTopic::kEditor,
        HelpTopic::kColumnChooser, HelpTopic::kColumnChooserCE}) {
    const HelpPage* page = book.PageOf(static_cast<std::uint32_t>(topic));
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->Topic, static_cast<std::uint32_t>(topic));
    EXPECT_TRUE(files.insert(page->File).second) << page->File;
  }
}

TEST_P(Manual, EveryPageOfTheContentsIsThereAndNoOther) {
  std::set<std::string> named = {"logbook.hhbook"};
  for (const HelpPage& page : Book().Pages) {
    EXPECT_TRUE(fs::exists(folder_ / page.File)) << page.File;
    named.insert(page.File);
  }
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (entry.path().extension() == ".png" || entry.is_directory()) continue;
    EXPECT_TRUE(named.count(entry.path().filename().string())) << entry.path();
  }
}

TEST_P(Manual, EveryLinkAndEveryPictureLeadsSomewhere) {
  std::set<std::string> pictures;
  const std::regex target("(?:href|src)=\"([^\"]*)\"");
  for (const HelpPage& page : Book().Pages) {
    const std::string text = Read(folder_ / page.File);
    for (std::sregex_iterator it(text.begin(), text.end(), target), end; it != end; ++it) {
      EXPECT_TRUE(fs::exists(folder_ / (*it)[1].str())) << page.File << ": " << (*it)[1];
      pictures.insert((*it)[1]);
    }
  }
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (entry.path().extension() != ".png") continue;
    EXPECT_TRUE(pictures.count(entry.path().filename().string())) << "unused " << entry.path();
  }
}

TEST_P(Manual, EveryPictureHasAnAlternativeTextOfItsOwn) {
  std::set<std::string> texts;
  const std::regex picture("<img([^>]*)>"), alternative(" alt=\"([^\"]+)\"");
  for (const HelpPage& page : Book().Pages) {
    const std::string text = Read(folder_ / page.File);
    for (std::sregex_iterator it(text.begin(), text.end(), picture), end; it != end; ++it) {
      const std::string attributes = (*it)[1];
      std::smatch found;
      ASSERT_TRUE(std::regex_search(attributes, found, alternative)) << page.File;
      EXPECT_TRUE(texts.insert(found[1]).second) << page.File << ": " << found[1];
    }
  }
  EXPECT_FALSE(texts.empty());
}

TEST_P(Manual, EveryMessageOfTheProgramIsExplained) {
  const std::string text = Read(folder_ / "messages.html");
  for (const int number : {124, 220, 221, 222, 224, 225, 1395, 1396, 1397, 1399, 1400, 1401, 1402,
                           1403, 1442, 1443, 1444, 1445, 1446}) {
    const std::string message(LoadResString(number));
    EXPECT_NE(text.find(message), std::string::npos) << message;
  }
}

TEST_P(Manual, EveryButtonOfTheMainWindowIsDescribed) {
  const std::string text = Read(folder_ / "main.html");
  for (const int number : {113, 114, 115, 117, 118, 119, 132}) {
    const std::string caption(LoadResString(number));
    EXPECT_NE(text.find("<td>" + caption + "</td>"), std::string::npos) << caption;
  }
}

TEST_P(Manual, ItHasThePagesAndTopicsOfTheEnglishOneInTheSameOrder) {
  const HelpBook english = BookIn(MANUAL_DIR), book = Book();
  ASSERT_EQ(book.Pages.size(), english.Pages.size());
  for (std::size_t i = 0; i < book.Pages.size(); ++i) {
    EXPECT_EQ(book.Pages[i].Topic, english.Pages[i].Topic) << book.Pages[i].File;
    EXPECT_EQ(book.Pages[i].File, english.Pages[i].File);
    EXPECT_EQ(book.Pages[i].Level, english.Pages[i].Level) << book.Pages[i].File;
    EXPECT_EQ(book.Pages[i].Title == english.Pages[i].Title, GetParam() == 0);
  }
}

INSTANTIATE_TEST_SUITE_P(All, Manual, testing::Range(std::size_t{0}, LanguageCount()),
                         [](const auto& test) { return std::string(LanguageAt(test.param).id); });

}  // namespace
}  // namespace logbook
