// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "help/HelpBook.h"

#include <gtest/gtest.h>

namespace logbook {
namespace {

constexpr char kIndex[] =
    "# a comment\n"
    "The Logbook\n"
    "\n"
    "-\tstart.html\tWelcome\n"
    "16700\tmain.html\tThe main window\n"
    "16703\teditor.html#ticks\t  The record editor\n";

TEST(HelpBook, TheFirstLineIsTheTitleAndTheOthersArePages) {
  const HelpBook book = ReadHelpBook(kIndex);
  EXPECT_EQ(book.Title, "The Logbook");
  ASSERT_EQ(book.Pages.size(), 3u);
  EXPECT_EQ(book.Pages[0].Topic, std::nullopt);
  EXPECT_EQ(book.Pages[0].File, "start.html");
  EXPECT_EQ(book.Pages[0].Title, "Welcome");
  EXPECT_EQ(book.Pages[1].Topic, 16700u);
  EXPECT_EQ(book.Pages[1].Level, 0);
  EXPECT_EQ(book.Pages[2].File, "editor.html#ticks");
  EXPECT_EQ(book.Pages[2].Title, "The record editor");
  EXPECT_EQ(book.Pages[2].Level, 1);
}

TEST(HelpBook, ATopicLeadsToItsPageAndAnUnknownOneToTheFirst) {
  const HelpBook book = ReadHelpBook(kIndex);
  EXPECT_EQ(book.PageOf(16703), &book.Pages[2]);
  EXPECT_EQ(book.PageOf(1), &book.Pages[0]);
  EXPECT_EQ(HelpBook().PageOf(16700), nullptr);
}

TEST(HelpBook, CarriageReturnsAndAByteOrderMarkDoNotCount) {
  const HelpBook book = ReadHelpBook("\xEF\xBB\xBFTitle\r\n7\ta.html\tA\r\n");
  EXPECT_EQ(book.Title, "Title");
  ASSERT_EQ(book.Pages.size(), 1u);
  EXPECT_EQ(book.Pages[0].Title, "A");
}

TEST(HelpBook, LinesWithoutAPageDoNotCount) {
  for (const char* line : {"16700", "16700\t", "16700\t\tno page", "-"})
    EXPECT_TRUE(ReadHelpBook(std::string("Title\n") + line).Pages.empty()) << line;
}

TEST(HelpBook, NumbersThatAreNoneAreNoTopics) {
  for (const char* number : {"-", "", "x", "12x", "99999999999"}) {
    const HelpBook book = ReadHelpBook("Title\n" + std::string(number) + "\ta.html\tA");
    ASSERT_EQ(book.Pages.size(), 1u) << number;
    EXPECT_EQ(book.Pages[0].Topic, std::nullopt) << number;
  }
}

TEST(HelpBook, EveryPrefixOfAnIndexReadsWithoutHarm) {
  const std::string index = kIndex;
  for (std::size_t length = 0; length <= index.size(); ++length)
    EXPECT_LE(ReadHelpBook(index.substr(0, length)).Pages.size(), 3u);
}

}  // namespace
}  // namespace logbook
