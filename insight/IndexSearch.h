// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Answers queries from an index, without a look at the logs: the logs that QueryMatch would find,
// sorted, with the values that are asked for.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "insight/IndexLayout.h"
#include "insight/IndexStore.h"
#include "insight/Query.h"

namespace logbook::insight {

// The rows that are one value to a person (RowNames.h): of one instrument at most one applies.
using RowGroup = std::vector<RowId>;

struct FindRequest {
  Query What;
  enum class Key { kDate, kFolder, kRow };
  Key SortBy = Key::kDate;
  RowGroup SortRow;  // for kRow
  enum class Order { kAscending, kDescending };
  Order SortOrder = Order::kDescending;
  std::size_t Limit = std::numeric_limits<std::size_t>::max();
  std::vector<RowGroup> Columns;
};

struct FoundLog {
  std::string Folder;
  LogRecord Record;
  std::optional<std::chrono::local_seconds> Date;
  bool Automatic = false;
  bool HasTicks = false;
  std::array<bool, kItemHeaderCount> Ticks = {};
  std::vector<RowValue> Values;  // of each column, from the row that applies
  std::vector<RowId> ValueRows;  // those rows
};

struct FindResult {
  std::vector<FoundLog> Logs;  // at most Limit
  std::size_t Count = 0;       // how many there are
};

// The answer. Logs without the value that is sorted by come last; equal ones follow by their
// folders' names. Raises IndexError.
FindResult FindInIndex(IndexStore& store, const Catalogues& catalogues, const FindRequest& request);

// The row of a group that applies to a log: the first with a value, else the first that does apply,
// else the first.
std::size_t ApplyingRow(const std::vector<ValueState>& states);

}  // namespace logbook::insight
