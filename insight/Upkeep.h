// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the ticks of the records say about maintenance, and what is due. A tick that the record
// before did not bear is certain: the work was done then. One that the record before bore already
// may have been carried over, since the editor opens with the ticks of the last record: it is
// claimed. Automatic records carry the ticks of the last confirmed one and say nothing themselves.
// Pure reckoning over values; none raises anything but SettingsError.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/LocalDate.h"
#include "insight/Series.h"

namespace logbook::insight {

using Ticks = std::array<bool, kItemHeaderCount>;

// What a record tells of its ticks.
struct UpkeepRecord {
  enum class Kind {
    kConfirmed,  // a person has confirmed the ticks
    kAutomatic,  // they repeat those of the last confirmed record
    kUnknown,    // its ticks cannot be read
  };
  LocalTime when{};
  std::string log;  // folder name
  Kind kind = Kind::kConfirmed;
  Ticks ticks{};
};

// For each record the ticks that are certain; the others that it bears are claimed. The records
// must ascend by time. The ticks of the first record have none before them and are certain. Behind
// a record whose ticks are unknown only those ticks are certain that no record before could have
// handed over: none.
std::vector<Ticks> CertainTicks(std::span<const UpkeepRecord> records);

// The certain ticks, or with `claimed` all ticks of confirmed records, as marks for a trend; of
// these items alone.
enum class TickKind { kCertain, kClaimed };
std::vector<MaintenanceMark> MarksOf(std::span<const UpkeepRecord> records, TickKind which,
                                     const Ticks& items);

// So many days, or months of the calendar.
struct Interval {
  int days = 0;
  int months = 0;

  // The day that so much later.
  LocalDay After(LocalDay day) const;
};

// "30", "30 days", "2 weeks", "6 months", "1 year"; nothing for any other text, for 0 and for what
// is longer than a century.
std::optional<Interval> ParseInterval(std::string_view text);

// "30 days", "6 months".
std::string IntervalText(const Interval& interval);

struct Intervals {
  std::array<std::optional<Interval>, kItemHeaderCount> items;
  int soon = 7;  // an item is due soon so many days before its day
};

// From the text of a file such as intervals.ini: section "Intervals" with an item's label or number
// (0 to 17) and its interval a line, section "Due" with the key Soon, a number of days. Raises
// SettingsError for anything else.
Intervals ParseIntervals(std::string_view file, std::string_view text);

// A moment at which an item was ticked.
struct TickDate {
  LocalTime when{};
  std::string log;
};

struct DueItem {
  enum class State {
    kNoInterval,  // nobody asked when it is due
    kNever,       // there is an interval and no record to reckon from
    kOk,
    kSoon,
    kDue,      // today
    kOverdue,  // the day has passed
  };
  int item = 0;  // 0 to 17
  std::string label;
  std::optional<TickDate> certain;  // the last one
  std::optional<TickDate> claimed;  // the last one of either kind: never before the certain one
  std::optional<Interval> interval;
  std::optional<LocalDay> due;
  std::optional<int> days_left;  // negative when overdue
  State state = State::kNoInterval;
};

// "no interval", "never", "ok", "soon", "due", "overdue".
std::string_view StateText(DueItem::State state);

// The state of all 18 items on a day, reckoned from the last certain tick or, if asked for, from
// the last one of either kind.
std::vector<DueItem> ReckonDue(std::span<const UpkeepRecord> records, const Intervals& intervals,
                               TickKind from, LocalDay today);

}  // namespace logbook::insight
