// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Trends as one self-contained SVG drawing: a panel for each row over a common time axis, with
// control limits, limits of the user, and the maintenance marks as labelled lines through all
// panels. Nothing is loaded from elsewhere and nothing runs. Pure.
#pragma once

#include <string>
#include <vector>

#include "insight/Trend.h"

namespace logbook::insight {

// The drawing in UTF-8, 960 units wide. Gaps interrupt the curves; values that a rule of the
// control chart names are drawn as red diamonds. Each point tells log, date and value when pointed
// at. The marks of the first trend are drawn. No trends give a drawing without panels.
std::string TrendSvg(const std::vector<Trend>& trends);

}  // namespace logbook::insight
