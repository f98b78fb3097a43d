// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Trends as one self-contained HTML page: the drawing, the figures of each row, the maintenance and
// what it changed, and all values. Nothing is loaded from elsewhere and nothing runs. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "insight/Trend.h"

namespace logbook::insight {

// The page in UTF-8. `source` names the log roots that the values are from.
std::string TrendHtml(const std::vector<Trend>& trends, std::string_view source);

}  // namespace logbook::insight
