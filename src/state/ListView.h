// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// ListView1: the list of logs as a plain table. The routines that fill, save, print and archive
// the list work on it; the window shows it through a model.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/RunTimeError.h"

namespace logbook {

struct ListColumn {
  std::string Key;
  int Width = 0;     // twips
  std::string Text;  // header
};

struct ListRow {
  std::string Key;   // "Item" and the row number
  std::string Text;  // column 1
  std::array<std::string, 8> SubItems;
  bool Selected = false;

  // Sub-item 1 to 8, the cells of columns 2 to 9.
  std::string& SubItem(int number) { return SubItems.at(static_cast<std::size_t>(number - 1)); }
  const std::string& SubItem(int number) const {
    return SubItems.at(static_cast<std::size_t>(number - 1));
  }
};

struct ListView {
  static constexpr int kColumns = 9;

  std::array<ListColumn, kColumns> Columns = {{{"Date", 1800, {}},
                                               {"File", 1000, {}},
                                               {"Item1", 600, {}},
                                               {"Item2", 600, {}},
                                               {"Item3", 600, {}},
                                               {"Item4", 600, {}},
                                               {"Item5", 600, {}},
                                               {"Item6", 600, {}},
                                               {"Comment", 1600, {}}}};
  std::vector<ListRow> Rows;
  int CurrentRow = 0;  // counted from 1; 0 for none

  // Column 1 to 9.
  ListColumn& Column(int number) { return Columns.at(static_cast<std::size_t>(number - 1)); }
  // Row counted from 1. Raises kSubscriptOutOfRange if there is none.
  ListRow& Row(int number) {
    if (number < 1 || number > static_cast<int>(Rows.size()))
      throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
    return Rows[static_cast<std::size_t>(number - 1)];
  }
  void Clear() {
    Rows.clear();
    CurrentRow = 0;
  }
};

}  // namespace logbook
