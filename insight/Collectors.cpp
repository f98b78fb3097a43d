// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Collectors.h"

#include <algorithm>
#include <tuple>

namespace logbook::insight {
namespace {

template <typename Entry>
void SortByTime(std::vector<Entry>& entries) {
  std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return std::tie(a.when, a.log) < std::tie(b.when, b.log);
  });
}

Series EmptySeries(const Catalogues& catalogues, const RowId& id) {
  const RowInfo info = DescribeRow(catalogues, id);
  Series series;
  series.catalogue = InfoOf(id.Which).Name;
  series.row = id.Row;
  series.label = info.Label;
  series.unit = info.Unit;
  series.section = info.Section;
  series.format = info.Format;
  return series;
}

SeriesPoint PointOf(const Catalogues& catalogues, const FoundLog& log, std::size_t column) {
  const RowValue& value = log.Values[column];
  const RowId& id = log.ValueRows[column];
  SeriesPoint point{*log.Date, {}, {}, std::string(NameOf(value.State)), log.Folder};
  if (value.State == ValueState::kOk && KindOf(catalogues, id) != RowKind::kText) {
    point.value = value.Number;
    point.text = PrintedText(catalogues, id, value);
  }
  return point;
}

bool LiesWithin(const Series& series, LocalTime when) {
  return !series.points.empty() && series.points.front().when <= when &&
         when <= series.points.back().when;
}

std::optional<UpkeepRecord> RecordOf(const FoundLog& log) {
  UpkeepRecord record;
  record.log = log.Folder;
  if (!log.Date) {
    const std::optional<LocalDay> day = DayOfFolder(log.Folder);
    if (!day) return std::nullopt;
    record.when = *day;
    record.kind = UpkeepRecord::Kind::kUnknown;
    return record;
  }
  if (!log.HasTicks) return std::nullopt;
  record.when = *log.Date;
  record.kind = log.Automatic ? UpkeepRecord::Kind::kAutomatic : UpkeepRecord::Kind::kConfirmed;
  record.ticks = log.Ticks;
  return record;
}

}  // namespace

std::vector<Series> SeriesOf(const Catalogues& catalogues, const std::vector<RowGroup>& groups,
                             const FindResult& found, const std::vector<MaintenanceMark>& marks) {
  std::vector<Series> all;
  for (std::size_t column = 0; column < groups.size(); ++column) {
    Series series = EmptySeries(catalogues, groups[column].front());
    for (const FoundLog& log : found.Logs) {
      if (log.Date) series.points.push_back(PointOf(catalogues, log, column));
    }
    SortByTime(series.points);
    for (const MaintenanceMark& mark : marks) {
      if (LiesWithin(series, mark.when)) series.marks.push_back(mark);
    }
    all.push_back(std::move(series));
  }
  return all;
}

std::size_t CountUndated(const FindResult& found) {
  return static_cast<std::size_t>(std::count_if(found.Logs.begin(), found.Logs.end(),
                                                [](const FoundLog& log) { return !log.Date; }));
}

std::vector<UpkeepRecord> RecordsOf(const FindResult& found) {
  std::vector<UpkeepRecord> records;
  for (const FoundLog& log : found.Logs) {
    if (std::optional<UpkeepRecord> record = RecordOf(log)) records.push_back(std::move(*record));
  }
  SortByTime(records);
  return records;
}

std::optional<LocalDay> DayOfFolder(std::string_view folder) {
  constexpr std::size_t kLength = 8;
  constexpr int kFirstYear = 80;
  if (folder.size() != kLength) return std::nullopt;
  const auto is_digit = [](char each) { return each >= '0' && each <= '9'; };
  const auto is_hexadecimal = [&](char each) {
    return is_digit(each) || (each >= 'A' && each <= 'F');
  };
  if (!std::all_of(folder.begin(), folder.begin() + 6, is_digit) ||
      !std::all_of(folder.begin() + 6, folder.end(), is_hexadecimal)) {
    return std::nullopt;
  }
  const int year = (folder[0] - '0') * 10 + (folder[1] - '0');
  return ParseDay((year < kFirstYear ? "20" : "19") + std::string(folder.substr(0, 2)) + '-' +
                  std::string(folder.substr(2, 2)) + '-' + std::string(folder.substr(4, 2)));
}

}  // namespace logbook::insight
