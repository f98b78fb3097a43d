// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is due, as a table for people and as JSON (docs/insight.md). Pure; UTF-8.
#pragma once

#include <string>
#include <vector>

#include "insight/Upkeep.h"

namespace logbook::insight {

// What is due by the records of one log root.
struct DueReport {
  std::string root;  // native path
  LocalDay today{};
  TickKind from = TickKind::kCertain;  // what was reckoned from
  std::vector<DueItem> items;
};

// A table: state, days left, day, item, interval, last certain and last claimed date with their
// logs; the most urgent first, items without an interval last. Where it is wider than so many
// columns (0: none count), the dates stand in a line of their own below each item that has any.
// Lines end in a line feed.
std::string DueTable(const DueReport& report, int columns = 0);

// One JSON document, an object with the list "roots", items in their own order; ended by a line
// feed.
std::string DueJson(const std::vector<DueReport>& reports);

}  // namespace logbook::insight
