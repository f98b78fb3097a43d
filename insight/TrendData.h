// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Trends as data for other programs: CSV and JSON (docs/insight.md). Pure; UTF-8.
#pragma once

#include <string>
#include <vector>

#include "insight/Trend.h"

namespace logbook::insight {

// RFC 4180 with a header line: one line a value or gap (log, date, catalogue, row, label, unit,
// value, text, state, rules, marks). Rules and marks are separated by ";".
std::string TrendCsv(const std::vector<Trend>& trends);

// One JSON document, an object with the list "trends", ended by a line feed.
std::string TrendJson(const std::vector<Trend>& trends);

}  // namespace logbook::insight
