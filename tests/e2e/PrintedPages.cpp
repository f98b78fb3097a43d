// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "PrintedPages.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>

namespace logbook::e2e {
namespace {

using test::PlacedWord;

// In points of 1/72 inch.
constexpr double kCharacter = 9 * 0.6;
constexpr double kLineSpacing = 9 * 1.1328 + 1.5;
constexpr double kSideMargin = 54, kEndMargin = 72;
constexpr double kTolerance = 2;

std::string WithoutEntities(std::string text) {
  constexpr std::pair<const char*, const char*> kEntities[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
  for (const auto& [entity, character] : kEntities) {
    for (std::size_t at = 0; (at = text.find(entity, at)) != std::string::npos; ++at)
      text.replace(at, std::string(entity).size(), character);
  }
  return text;
}

std::size_t Characters(const std::string& text) {
  std::size_t count = 0;
  for (const char byte : text) count += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
  return count;
}

void PutIntoBody(const PlacedWord& word, std::vector<std::string>& body) {
  const auto row =
      static_cast<std::size_t>(std::lround((word.top - kEndMargin - 1.5) / kLineSpacing));
  const auto column = static_cast<std::size_t>(std::lround((word.left - kSideMargin) / kCharacter));
  if (body.size() <= row) body.resize(row + 1);
  std::string& line = body[row];
  const std::size_t length = Characters(line);
  EXPECT_LE(length, column) << "\"" << word.text << "\" overlaps \"" << line << "\"";
  if (length < column) line.append(column - length, ' ');
  line += word.text;
}

void Put(const PlacedWord& word, PrintedPage& page) {
  page.words.push_back(word);
  if (word.bottom < kEndMargin) {
    page.header += (page.header.empty() ? "" : " ") + word.text;
  } else if (word.top > page.height - kEndMargin) {
    page.footer.push_back(word);
  } else {
    PutIntoBody(word, page.body);
  }
}

std::string MomentText(std::time_t time) {
  const std::tm* local = std::localtime(&time);
  char text[40];
  std::strftime(text, sizeof text, " %b %Y %H:%M:%S", local);
  return std::to_string(local->tm_mday) + text;
}

void ExpectFooter(const PrintedPage& page, const std::string& number, std::time_t from,
                  std::time_t to) {
  ASSERT_EQ(page.footer.size(), 6u) << "Page n/m, three words of the date, time";
  EXPECT_EQ(page.footer[0].text, "Page");
  EXPECT_EQ(page.footer[1].text, number);
  EXPECT_NEAR((page.footer[0].left + page.footer[1].right) / 2, page.width / 2, kTolerance);
  std::string moment;
  for (std::size_t i = 2; i < page.footer.size(); ++i)
    moment += (moment.empty() ? "" : " ") + page.footer[i].text;
  std::vector<std::string> moments;
  for (std::time_t time = from; time <= to; ++time) moments.push_back(MomentText(time));
  EXPECT_THAT(moments, testing::Contains(moment));
  EXPECT_NEAR(page.footer.back().right, page.width - kSideMargin, kTolerance);
}

}  // namespace

std::vector<PrintedPage> ReadPrintedPages(const std::string& pdf) {
  const test::PaperSize paper = test::PaperOf(pdf);
  std::vector<PrintedPage> pages;
  for (PlacedWord word : test::WordsOf(pdf)) {
    word.text = WithoutEntities(word.text);
    while (pages.size() < static_cast<std::size_t>(word.page))
      pages.push_back({.width = paper.width, .height = paper.height});
    Put(word, pages[static_cast<std::size_t>(word.page) - 1]);
  }
  return pages;
}

std::vector<std::string> RowsOf(const std::vector<PrintedPage>& pages) {
  std::vector<std::string> rows;
  for (const PrintedPage& page : pages) rows.insert(rows.end(), page.body.begin(), page.body.end());
  return rows;
}

void ExpectMargins(const std::vector<PrintedPage>& pages, const std::string& header,
                   std::time_t from, std::time_t to) {
  for (std::size_t i = 0; i < pages.size(); ++i) {
    SCOPED_TRACE("page " + std::to_string(i + 1));
    EXPECT_EQ(pages[i].header, header);
    ExpectFooter(pages[i], std::to_string(i + 1) + "/" + std::to_string(pages.size()), from, to);
  }
}

void ExpectFontsEmbedded(const std::string& pdf) {
  const auto fonts = test::FontsOf(pdf);
  EXPECT_FALSE(fonts.empty());
  EXPECT_THAT(fonts, testing::Each(testing::Field(&test::PdfFont::embedded, true)));
}

}  // namespace logbook::e2e
