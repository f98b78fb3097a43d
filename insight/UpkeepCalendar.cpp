// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/UpkeepCalendar.h"

#include <libical/ical.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "base/Utf8Path.h"
#include "insight/Export.h"

namespace logbook::insight {
namespace {

using std::chrono::year_month_day;

constexpr int kLastYear = 9999;  // of the format

struct FreeComponent {
  void operator()(icalcomponent* component) const { icalcomponent_free(component); }
};
using Component = std::unique_ptr<icalcomponent, FreeComponent>;

std::string OwnedText(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

std::string Serialized(icalcomponent* component) {
  const std::unique_ptr<char, decltype(&std::free)> text(icalcomponent_as_ical_string_r(component),
                                                         &std::free);
  return OwnedText(text.get());
}

Component NewCalendar() {
  Component calendar(icalcomponent_new_vcalendar());
  icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
  icalcomponent_add_property(
      calendar.get(),
      icalproperty_new_prodid("-//The Maintenance LogBook authors//logbookctl//EN"));
  icalcomponent_add_property(calendar.get(), icalproperty_new_calscale("GREGORIAN"));
  return calendar;
}

Component ParseCalendar(std::string_view text) {
  Component calendar(icalcomponent_new_from_string(std::string(text).c_str()));
  if (!calendar || icalcomponent_isa(calendar.get()) != ICAL_VCALENDAR_COMPONENT) {
    throw CalendarError("the file is not one iCalendar");
  }
  if (icalcomponent_count_errors(calendar.get()) > 0) {
    throw CalendarError("the file holds lines that this program does not understand");
  }
  return calendar;
}

// What an event should say.
struct Event {
  std::string uid;
  LocalDay day{};
  std::string summary;
  std::string description;
};

std::string UidOf(const CalendarRoot& root, int item) {
  return "item" + std::to_string(item) + "-" + root.key + "@maintenance-logbook";
}

Event EventOf(const CalendarRoot& root, const DueItem& item) {
  std::string description = "Every " + IntervalText(*item.interval) + ".";
  if (item.certain) {
    description += "\nLast certain: " + DayText(DayOf(item.certain->when)) + " (log " +
                   item.certain->log + ").";
  }
  if (item.claimed && (!item.certain || item.claimed->when != item.certain->when)) {
    description += "\nLast claimed: " + DayText(DayOf(item.claimed->when)) + " (log " +
                   item.claimed->log + ").";
  }
  return {UidOf(root, item.item), *item.due, item.label + ": " + root.name, description};
}

icaltimetype DateOf(LocalDay day) {
  const year_month_day parts(day);
  icaltimetype date = icaltime_null_date();
  date.year = static_cast<int>(parts.year());
  date.month = static_cast<int>(static_cast<unsigned>(parts.month()));
  date.day = static_cast<int>(static_cast<unsigned>(parts.day()));
  return date;
}

// The calendar while it is brought up to date.
class Update {
 public:
  Update(icalcomponent* calendar, std::chrono::sys_seconds now)
      : calendar_(calendar),
        now_(icaltime_from_timet_with_zone(std::chrono::system_clock::to_time_t(now), 0,
                                           icaltimezone_get_utc_timezone())) {}

  bool Changed() const { return changed_; }

  void Put(const Event& event) {
    icalcomponent* component = Find(event.uid);
    if (component != nullptr && Says(component, event)) return;
    if (component == nullptr) {
      component = icalcomponent_new_vevent();
      icalcomponent_add_component(calendar_, component);
      icalcomponent_set_uid(component, event.uid.c_str());
      icalcomponent_add_property(component, icalproperty_new_transp(ICAL_TRANSP_TRANSPARENT));
      icalcomponent_add_property(component, icalproperty_new_categories("Maintenance"));
      icalcomponent_set_sequence(component, 0);
    } else {
      icalcomponent_set_sequence(component, icalcomponent_get_sequence(component) + 1);
    }
    Fill(component, event);
  }

  void Cancel(const std::string& uid) {
    icalcomponent* component = Find(uid);
    if (component == nullptr || IsCancelled(component)) return;
    icalcomponent_set_status(component, ICAL_STATUS_CANCELLED);
    icalcomponent_set_sequence(component, icalcomponent_get_sequence(component) + 1);
    Stamp(component);
  }

 private:
  icalcomponent* Find(const std::string& uid) const {
    for (icalcomponent* each = icalcomponent_get_first_component(calendar_, ICAL_VEVENT_COMPONENT);
         each != nullptr;
         each = icalcomponent_get_next_component(calendar_, ICAL_VEVENT_COMPONENT)) {
      if (OwnedText(icalcomponent_get_uid(each)) == uid) return each;
    }
    return nullptr;
  }

  static bool IsCancelled(icalcomponent* component) {
    return icalcomponent_get_status(component) == ICAL_STATUS_CANCELLED;
  }

  static bool Says(icalcomponent* component, const Event& event) {
    const icaltimetype start = icalcomponent_get_dtstart(component);
    return !IsCancelled(component) && start.is_date != 0 &&
           icaltime_compare_date_only(start, DateOf(event.day)) == 0 &&
           OwnedText(icalcomponent_get_summary(component)) == event.summary &&
           OwnedText(icalcomponent_get_description(component)) == event.description;
  }

  void Fill(icalcomponent* component, const Event& event) {
    icalcomponent_set_dtstart(component, DateOf(event.day));
    icalcomponent_set_dtend(component, DateOf(event.day + std::chrono::days(1)));
    icalcomponent_set_summary(component, event.summary.c_str());
    icalcomponent_set_description(component, event.description.c_str());
    icalcomponent_set_status(component, ICAL_STATUS_CONFIRMED);
    Stamp(component);
  }

  void Stamp(icalcomponent* component) {
    icalcomponent_set_dtstamp(component, now_);
    changed_ = true;
  }

  icalcomponent* calendar_;
  icaltimetype now_;
  bool changed_ = false;
};

bool HasEvent(const DueItem& item) {
  return item.due && year_month_day(*item.due).year() < std::chrono::year(kLastYear);
}

// FNV-1a, which is the same everywhere.
std::uint64_t HashOf(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char each : text) hash = (hash ^ static_cast<unsigned char>(each)) * 0x100000001b3;
  return hash;
}

}  // namespace

CalendarRoot CalendarRootOf(const std::string& native_path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(Utf8Path(native_path), error);
  const std::string path = error ? native_path : real.string();
  return {FingerprintText(LogIdentity{.Fingerprint = HashOf(path)}), path};
}

std::string UpdateCalendar(std::string_view existing, const CalendarRoot& root,
                           std::span<const DueItem> items, std::chrono::sys_seconds now) {
  const Component calendar = existing.empty() ? NewCalendar() : ParseCalendar(existing);
  Update update(calendar.get(), now);
  for (const DueItem& item : items) {
    if (HasEvent(item)) {
      update.Put(EventOf(root, item));
    } else {
      update.Cancel(UidOf(root, item.item));
    }
  }
  return existing.empty() || update.Changed() ? Serialized(calendar.get()) : std::string(existing);
}

}  // namespace logbook::insight
