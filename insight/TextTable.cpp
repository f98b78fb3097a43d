// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/TextTable.h"

#include <algorithm>

#include "insight/VisibleText.h"
#include "text/TextParts.h"

namespace logbook::insight {
namespace {

std::size_t Characters(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

}  // namespace

TextTable::TextTable(std::initializer_list<std::string_view> titles)
    : TextTable(std::vector<std::string>(titles.begin(), titles.end())) {}

TextTable::TextTable(const std::vector<std::string>& titles) {
  std::vector<std::string> row;
  for (std::string_view title : titles) {
    columns_.push_back({title.starts_with('>'), 0});
    if (title.starts_with('>')) title.remove_prefix(1);
    row.emplace_back(title);
  }
  const auto is_empty = [](const std::string& title) { return title.empty(); };
  if (!std::all_of(row.begin(), row.end(), is_empty)) Add(std::move(row));
}

void TextTable::Add(std::vector<std::string> cells) {
  cells.resize(columns_.size());
  for (std::size_t i = 0; i < cells.size(); ++i) {
    std::replace_if(
        cells[i].begin(), cells[i].end(),
        [](char each) { return each == '\n' || each == '\r' || each == '\t'; }, ' ');
    cells[i] = VisibleText(cells[i]);
    columns_[i].width = std::max(columns_[i].width, Characters(cells[i]));
  }
  rows_.push_back(std::move(cells));
}

void TextTable::AddLine(std::string_view line) {
  rows_.push_back({VisibleText(line)});
}

std::string TextTable::Text() const {
  std::string text;
  for (const std::vector<std::string>& row : rows_) {
    std::string line = row.size() == 1 ? row.front() : "";
    for (std::size_t i = 0; row.size() > 1 && i < row.size(); ++i) {
      const std::string room(columns_[i].width - Characters(row[i]), ' ');
      line += (i == 0 ? "" : "  ") + (columns_[i].right ? room + row[i] : row[i] + room);
    }
    text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  }
  return text;
}

}  // namespace logbook::insight
