// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A table of text for a terminal: columns as wide as their widest cell, two blanks between them.
// Pure; none raises anything.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace logbook::insight {

class TextTable {
 public:
  // The titles stand above the columns. A title that begins with ">" (not shown) has its column
  // flush right.
  // No line of titles if all are empty. There are two columns at least.
  explicit TextTable(std::initializer_list<std::string_view> titles);
  explicit TextTable(const std::vector<std::string>& titles);

  // A row; cells beyond the titles are dropped, missing ones are empty. Line ends and tabs in a
  // cell become blanks; what else a terminal would obey is made visible (VisibleText.h).
  void Add(std::vector<std::string> cells);

  // A line of its own that no column follows, such as a heading.
  void AddLine(std::string_view line);

  // All lines, each ended by a line feed and without blanks at its end.
  std::string Text() const;

 private:
  struct Column {
    bool right = false;
    std::size_t width = 0;  // characters
  };
  // A row of a single cell is a line of its own.
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace logbook::insight
