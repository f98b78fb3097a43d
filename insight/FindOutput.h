// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What logbookctl find prints of the logs that it found, as a table, CSV or JSON (docs/insight.md).
// Pure; UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "insight/IndexSearch.h"

namespace logbook::insight {

// A column of the answer.
struct FindColumn {
  enum class Kind { kDate, kLog, kRoot, kAutomatic, kTicks, kComment, kRow };
  Kind What = Kind::kDate;
  std::size_t Value = 0;  // kRow: place in FindRequest::Columns
};

// The column of a word: "date", "log", "root", "auto", "ticks", "comment"; nothing for any other,
// which then is a row's name.
std::optional<FindColumn> FindSpecialColumn(std::string_view name);

// What was found in all roots, in the order in which it is shown.
struct FindAnswer {
  std::string Query;
  std::size_t Count = 0;  // in all
  struct Entry {
    std::string Root;
    FoundLog Log;
  };
  std::vector<Entry> Logs;
  std::vector<RowGroup> Rows;  // FindRequest::Columns
  std::vector<FindColumn> Columns;
};

// Sorts the logs of several roots as each of them was sorted: by the last of the values where that
// is what they are sorted by.
void SortAnswer(FindAnswer& answer, const Catalogues& catalogues, FindRequest::Key key,
                FindRequest::Order order);

// A table with a line above it for the titles; a value with its state where there is none.
std::string FindTable(const FindAnswer& answer, const Catalogues& catalogues);

// RFC 4180 with a line of titles; texts of people made harmless.
std::string FindCsv(const FindAnswer& answer, const Catalogues& catalogues);

// One JSON document, ended by a line feed.
std::string FindJson(const FindAnswer& answer, const Catalogues& catalogues);

}  // namespace logbook::insight
