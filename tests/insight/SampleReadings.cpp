// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "SampleReadings.h"

namespace logbook::test {

using insight::LogReading;
using insight::RowId;
using insight::RowValue;
using insight::ValueState;

const Catalogues& AllCatalogues() {
  static const Catalogues kFilled = [] {
    Catalogues catalogues;
    FillCatalogues(catalogues);
    return catalogues;
  }();
  return kFilled;
}

LogReading QuietReading(const std::string& folder, const std::string& date) {
  LogReading reading;
  reading.Identity = {"/srv/logs", folder, date, 1};
  reading.Date = insight::ParseLogDate(date);
  reading.Comment = "quiet";
  reading.HasComment = true;
  reading.HasTicks = true;
  reading.Values.assign(insight::kAllRows, RowValue{ValueState::kOk, 0, {}});
  return reading;
}

void SetNumber(LogReading& reading, const RowId& id, double number) {
  reading.Values[static_cast<std::size_t>(insight::PlaceOf(id))] = {ValueState::kOk, number, {}};
}

void SetState(LogReading& reading, const RowId& id, ValueState state) {
  reading.Values[static_cast<std::size_t>(insight::PlaceOf(id))] = {state, 0, {}};
}

std::vector<LogReading> ReadAll(const RandomLogs& logs, const std::vector<std::string>& folders) {
  std::vector<LogReading> readings;
  for (const std::string& folder : folders) {
    readings.push_back(ReadLog(*logs.machine().code_page, AllCatalogues(),
                               insight::LoadLogFiles(logs.machine(), RandomLogs::kRoot, folder)));
  }
  return readings;
}

std::vector<LogReading> RandomReadings(RandomLogs& logs, int count) {
  std::vector<std::string> folders = logs.Add(count / 2);
  for (std::string& folder : logs.AddDamaged(count - count / 2)) folders.push_back(folder);
  return ReadAll(logs, folders);
}

}  // namespace logbook::test
