// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "help/HelpBook.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace logbook {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view TakeUntil(std::string_view& text, char delimiter) {
  const std::size_t end = std::min(text.find(delimiter), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

HelpPage ReadPage(std::string_view line) {
  HelpPage page;
  const std::string_view number = TakeUntil(line, '\t');
  std::uint32_t topic = 0;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), topic);
  if (read.ec == std::errc() && read.ptr == number.data() + number.size()) page.Topic = topic;
  page.File = TakeUntil(line, '\t');
  const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
  page.Level = static_cast<int>(blanks / 2);
  page.Title = line.substr(blanks);
  return page;
}

}  // namespace

const HelpPage* HelpBook::PageOf(std::uint32_t topic) const {
  if (Pages.empty()) return nullptr;
  const auto found = std::find_if(Pages.begin(), Pages.end(),
                                  [topic](const HelpPage& page) { return page.Topic == topic; });
  return found == Pages.end() ? &Pages.front() : &*found;
}

HelpBook ReadHelpBook(std::string_view index) {
  if (index.starts_with(kByteOrderMark)) index.remove_prefix(kByteOrderMark.size());
  HelpBook book;
  bool has_title = false;
  while (!index.empty()) {
    std::string_view line = TakeUntil(index, '\n');
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) continue;
    if (!has_title) {
      book.Title = line;
      has_title = true;
      continue;
    }
    HelpPage page = ReadPage(line);
    if (!page.File.empty()) book.Pages.push_back(std::move(page));
  }
  return book;
}

}  // namespace logbook
