// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Upkeep.h"

#include "insight/RowNames.h"

namespace logbook::insight {
namespace {

// Walks the records and hands each confirmed one over with its certain ticks.
template <typename Use>
void WalkConfirmed(std::span<const UpkeepRecord> records, Use use) {
  const std::vector<Ticks> certain = CertainTicks(records);
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].kind == UpkeepRecord::Kind::kConfirmed) use(records[i], certain[i]);
  }
}

DueItem::State StateFor(int days_left, int soon) {
  if (days_left < 0) return DueItem::State::kOverdue;
  if (days_left == 0) return DueItem::State::kDue;
  return days_left <= soon ? DueItem::State::kSoon : DueItem::State::kOk;
}

void Reckon(DueItem& item, const Intervals& intervals, TickKind from, LocalDay today) {
  item.interval = intervals.items[static_cast<std::size_t>(item.item)];
  if (!item.interval) return;
  const std::optional<TickDate>& last = from == TickKind::kCertain ? item.certain : item.claimed;
  if (!last) {
    item.state = DueItem::State::kNever;
    return;
  }
  item.due = item.interval->After(DayOf(last->when));
  item.days_left = static_cast<int>((*item.due - today).count());
  item.state = StateFor(*item.days_left, intervals.soon);
}

}  // namespace

std::vector<Ticks> CertainTicks(std::span<const UpkeepRecord> records) {
  std::vector<Ticks> certain;
  Ticks before{};  // what the next record may have been handed over
  for (const UpkeepRecord& record : records) {
    Ticks fresh{};
    if (record.kind == UpkeepRecord::Kind::kUnknown) {
      before.fill(true);
    } else {
      if (record.kind == UpkeepRecord::Kind::kConfirmed) {
        for (std::size_t i = 0; i < fresh.size(); ++i) fresh[i] = record.ticks[i] && !before[i];
      }
      before = record.ticks;
    }
    certain.push_back(fresh);
  }
  return certain;
}

std::vector<MaintenanceMark> MarksOf(std::span<const UpkeepRecord> records, TickKind which,
                                     const Ticks& items) {
  const std::vector<std::string> labels = TickLabels();
  std::vector<MaintenanceMark> marks;
  WalkConfirmed(records, [&](const UpkeepRecord& record, const Ticks& certain) {
    const Ticks& ticks = which == TickKind::kCertain ? certain : record.ticks;
    MaintenanceMark mark{record.when, {}, record.log};
    for (std::size_t i = 0; i < ticks.size(); ++i) {
      if (ticks[i] && items[i]) mark.labels.push_back(labels[i]);
    }
    if (!mark.labels.empty()) marks.push_back(std::move(mark));
  });
  return marks;
}

std::string_view StateText(DueItem::State state) {
  switch (state) {
    case DueItem::State::kNoInterval:
      return "no interval";
    case DueItem::State::kNever:
      return "never";
    case DueItem::State::kOk:
      return "ok";
    case DueItem::State::kSoon:
      return "soon";
    case DueItem::State::kDue:
      return "due";
    case DueItem::State::kOverdue:
      return "overdue";
  }
  return {};
}

std::vector<DueItem> ReckonDue(std::span<const UpkeepRecord> records, const Intervals& intervals,
                               TickKind from, LocalDay today) {
  std::vector<DueItem> items;
  for (const std::string& label : TickLabels()) {
    items.push_back({.item = static_cast<int>(items.size()), .label = label});
  }
  WalkConfirmed(records, [&](const UpkeepRecord& record, const Ticks& certain) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (certain[i]) items[i].certain = TickDate{record.when, record.log};
      if (record.ticks[i]) items[i].claimed = TickDate{record.when, record.log};
    }
  });
  for (DueItem& item : items) Reckon(item, intervals, from, today);
  return items;
}

}  // namespace logbook::insight
