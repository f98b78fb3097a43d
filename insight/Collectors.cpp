// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Collectors.h"

#include <algorithm>
#include <tuple>
#include <utility>

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

}  // namespace

SeriesCollector::SeriesCollector(const Catalogues& catalogues, std::vector<RowId> rows)
    : catalogues_(catalogues), rows_(std::move(rows)) {
  for (const RowId& id : rows_) series_.push_back(EmptySeries(catalogues_, id));
}

void SeriesCollector::Add(const LogReading& reading) {
  if (!reading.Date) {
    ++undated_;
    return;
  }
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const RowValue& value = reading.At(rows_[i]);
    SeriesPoint point{
        *reading.Date, {}, {}, std::string(NameOf(value.State)), reading.Identity.Folder};
    if (value.State == ValueState::kOk && KindOf(catalogues_, rows_[i]) != RowKind::kText) {
      point.value = value.Number;
      point.text = PrintedText(catalogues_, rows_[i], value);
    }
    series_[i].points.push_back(std::move(point));
  }
}

std::vector<Series> SeriesCollector::Take(const std::vector<MaintenanceMark>& marks) {
  for (Series& series : series_) {
    SortByTime(series.points);
    series.marks = marks;
  }
  return std::exchange(series_, {});
}

void UpkeepCollector::Add(const LogReading& reading) {
  UpkeepRecord record;
  record.log = reading.Identity.Folder;
  if (!reading.Date) {
    const std::optional<LocalDay> day = DayOfFolder(record.log);
    if (!day) return;
    record.when = *day;
    record.kind = UpkeepRecord::Kind::kUnknown;
  } else if (reading.HasTicks) {
    record.when = *reading.Date;
    record.kind =
        reading.Automatic ? UpkeepRecord::Kind::kAutomatic : UpkeepRecord::Kind::kConfirmed;
    record.ticks = reading.Ticks;
  } else {
    return;
  }
  records_.push_back(std::move(record));
}

std::vector<UpkeepRecord> UpkeepCollector::Take() {
  SortByTime(records_);
  return std::exchange(records_, {});
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
