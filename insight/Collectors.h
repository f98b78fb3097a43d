// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What trends and upkeep take from the logs that an index has found. Results ascend by date, logs
// of equal date by the names of their folders. A log without a date has no place in time. Pure;
// none raises anything.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/IndexSearch.h"
#include "insight/Series.h"
#include "insight/Upkeep.h"

namespace logbook::insight {

// One series for each group of rows that was asked for as a column of the request, with the values
// of the rows that apply and those of the marks that lie between its first and its last log. A text
// has no place in a series and counts as a gap.
std::vector<Series> SeriesOf(const Catalogues& catalogues, const std::vector<RowGroup>& groups,
                             const FindResult& found, const std::vector<MaintenanceMark>& marks);

// Logs without a date, which are in no series.
std::size_t CountUndated(const FindResult& found);

// What the records say of maintenance. A log that nobody has confirmed says nothing. One without a
// date stands, with unknown ticks, at the beginning of the day that its folder is named by: it may
// have handed its ticks on.
std::vector<UpkeepRecord> RecordsOf(const FindResult& found);

// The day in a folder name of the form YYMMDDnn (nn two upper-case hexadecimal digits), years from
// 1980 to 2079; nothing for any other name.
std::optional<LocalDay> DayOfFolder(std::string_view folder);

}  // namespace logbook::insight
