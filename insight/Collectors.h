// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What trends and upkeep take from readings, log by log, so that no more of a log root is held than
// they need. Logs may come in any order; the results ascend by date, logs of equal date by the
// names of their folders. A log without a date has no place in time. Pure; none raises anything.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/CatalogueRow.h"
#include "insight/LogReading.h"
#include "insight/Series.h"
#include "insight/Upkeep.h"

namespace logbook::insight {

// The values of some rows over all logs.
class SeriesCollector {
 public:
  // Rows of numbers and bits; a text has no place in a series and counts as a gap.
  SeriesCollector(const Catalogues& catalogues, std::vector<RowId> rows);

  void Add(const LogReading& reading);

  // Logs without a date, which are in no series.
  std::size_t Undated() const { return undated_; }

  // One series a row, in the order of the rows, with these marks; the collector is empty
  // afterwards.
  std::vector<Series> Take(const std::vector<MaintenanceMark>& marks);

 private:
  const Catalogues& catalogues_;
  std::vector<RowId> rows_;
  std::vector<Series> series_;
  std::size_t undated_ = 0;
};

// What the records say of maintenance.
class UpkeepCollector {
 public:
  // A log that nobody has confirmed says nothing. One without a date stands, with unknown ticks, at
  // the beginning of the day that its folder is named by: it may have handed its ticks on.
  void Add(const LogReading& reading);

  // The records; the collector is empty afterwards.
  std::vector<UpkeepRecord> Take();

 private:
  std::vector<UpkeepRecord> records_;
};

// The day in a folder name of the form YYMMDDnn (nn two upper-case hexadecimal digits), years from
// 1980 to 2079; nothing for any other name.
std::optional<LocalDay> DayOfFolder(std::string_view folder);

}  // namespace logbook::insight
