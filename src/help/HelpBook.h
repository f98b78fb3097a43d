// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A help book: a folder of HTML pages and an index file that names them, "*.hhbook". The index is
// UTF-8 text (docs/printing-and-help.md). Its first line is the book's title; every other line is a
// page in the order of the contents, as three fields with a tab between them:
//
//   topic number, or "-" for a page that no program asks for
//   file name of the page, from the folder of the index; "#" and an anchor may follow
//   title; two blanks in front for each level that it stands below the page above
//
// Empty lines and lines that begin with "#" do not count, and neither do lines without a page.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace logbook {

inline constexpr char kHelpBookExtension[] = ".hhbook";

struct HelpPage {
  std::optional<std::uint32_t> Topic;
  std::string File;
  std::string Title;
  int Level = 0;
};

struct HelpBook {
  std::string Title;
  std::vector<HelpPage> Pages;

  // The page of a topic; the first page if no page has that number; nullptr in an empty book.
  const HelpPage* PageOf(std::uint32_t topic) const;
};

// The book that an index file describes. Line ends may be LF or CR LF. Raises nothing.
HelpBook ReadHelpBook(std::string_view index);

}  // namespace logbook
