// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Differences between logs in the forms that the command "diff" gives them: text for a terminal, a
// self-contained HTML page, JSON (docs/insight.md). Options and rows that no longer apply come
// first, then what is missing, then values by catalogue and section. Pure; UTF-8.
#pragma once

#include <string>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/Difference.h"

namespace logbook::insight {

// Lines end in a line feed. Two equal logs give their heads and "no difference".
std::string DifferenceText(const Catalogues& catalogues, const LogDifference& difference);

// One page with a chapter for each comparison.
std::string DifferenceHtml(const Catalogues& catalogues,
                           const std::vector<LogDifference>& differences);

// One JSON document, an object with the list "differences"; ended by a line feed.
std::string DifferenceJson(const Catalogues& catalogues,
                           const std::vector<LogDifference>& differences);

}  // namespace logbook::insight
