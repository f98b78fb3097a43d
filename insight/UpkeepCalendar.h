// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The days on which maintenance is due as an iCalendar (RFC 5545) that any calendar program reads:
// an all-day event an item. An event keeps its UID for ever, so that a calendar that is written
// anew updates what a program has imported, and never doubles it. Text in, text out.
#pragma once

#include <chrono>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "insight/LocalDate.h"
#include "insight/Upkeep.h"

namespace logbook::insight {

// A text that is no calendar, or one that cannot be kept whole when it is written anew.
class CalendarError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The log root that the events are of. Its key is part of every UID.
struct CalendarRoot {
  std::string key;   // letters and digits; the same for the same root for ever
  std::string name;  // for people
};

// The key and the name of a root by its native path: of a path that stays, the key stays.
CalendarRoot CalendarRootOf(const std::string& native_path);

// The calendar with the events of these items: `existing` (empty for a new one) with the events of
// this root brought up to date. An event whose day or text has changed gets the next SEQUENCE and
// the time stamp `now`; one whose item is no longer due on any day becomes cancelled; an event that
// says already what it should, and whatever else the calendar holds, stays. Where nothing changes
// the text comes back byte for byte. Raises CalendarError if `existing` is not one calendar that
// can be understood whole.
std::string UpdateCalendar(std::string_view existing, const CalendarRoot& root,
                           std::span<const DueItem> items, std::chrono::sys_seconds now);

}  // namespace logbook::insight
