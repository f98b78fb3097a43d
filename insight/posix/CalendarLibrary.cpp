// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The library of calendars, loaded when the first calendar is written: it brings one of languages
// with it that is larger than the rest of the program. A call raises std::runtime_error if the
// machine lacks it.

#include <libical/ical.h>

#include "base/posix/LateLibrary.h"

namespace {

logbook::posix::LateLibrary& Ical() {
  static logbook::posix::LateLibrary library(LOGBOOK_ICAL_LIBRARY);
  return library;
}

}  // namespace

// clang-format off
#define LATE(result, name, parameters, arguments) \
  LOGBOOK_LATE_ROUTINE(Ical(), result, name, parameters, arguments)

LATE(icalcomponent*, icalcomponent_new_vcalendar, (), ())
LATE(icalcomponent*, icalcomponent_new_vevent, (), ())
LATE(icalcomponent*, icalcomponent_new_from_string, (const char* text), (text))
LATE(void, icalcomponent_free, (icalcomponent* component), (component))
LATE(char*, icalcomponent_as_ical_string_r, (icalcomponent* component), (component))
LATE(icalcomponent_kind, icalcomponent_isa, (const icalcomponent* component), (component))
LATE(int, icalcomponent_count_errors, (icalcomponent* component), (component))
LATE(void, icalcomponent_add_property, (icalcomponent* component, icalproperty* property),
     (component, property))
LATE(void, icalcomponent_add_component, (icalcomponent* parent, icalcomponent* child),
     (parent, child))
LATE(icalcomponent*, icalcomponent_get_first_component,
     (icalcomponent* component, icalcomponent_kind kind), (component, kind))
LATE(icalcomponent*, icalcomponent_get_next_component,
     (icalcomponent* component, icalcomponent_kind kind), (component, kind))

LATE(const char*, icalcomponent_get_uid, (icalcomponent* component), (component))
LATE(void, icalcomponent_set_uid, (icalcomponent* component, const char* text), (component, text))
LATE(const char*, icalcomponent_get_summary, (icalcomponent* component), (component))
LATE(void, icalcomponent_set_summary, (icalcomponent* component, const char* text),
     (component, text))
LATE(const char*, icalcomponent_get_description, (icalcomponent* component), (component))
LATE(void, icalcomponent_set_description, (icalcomponent* component, const char* text),
     (component, text))
LATE(int, icalcomponent_get_sequence, (icalcomponent* component), (component))
LATE(void, icalcomponent_set_sequence, (icalcomponent* component, int number),
     (component, number))
LATE(icalproperty_status, icalcomponent_get_status, (icalcomponent* component), (component))
LATE(void, icalcomponent_set_status, (icalcomponent* component, icalproperty_status status),
     (component, status))
LATE(icaltimetype, icalcomponent_get_dtstart, (icalcomponent* component), (component))
LATE(void, icalcomponent_set_dtstart, (icalcomponent* component, icaltimetype time),
     (component, time))
LATE(void, icalcomponent_set_dtend, (icalcomponent* component, icaltimetype time),
     (component, time))
LATE(void, icalcomponent_set_dtstamp, (icalcomponent* component, icaltimetype time),
     (component, time))

LATE(icalproperty*, icalproperty_new_version, (const char* text), (text))
LATE(icalproperty*, icalproperty_new_prodid, (const char* text), (text))
LATE(icalproperty*, icalproperty_new_calscale, (const char* text), (text))
LATE(icalproperty*, icalproperty_new_categories, (const char* text), (text))
LATE(icalproperty*, icalproperty_new_transp, (icalproperty_transp transparency), (transparency))

LATE(icaltimetype, icaltime_null_date, (), ())
LATE(icaltimetype, icaltime_from_timet_with_zone,
     (time_t time, int is_date, const icaltimezone* zone), (time, is_date, zone))
LATE(int, icaltime_compare_date_only, (icaltimetype left, icaltimetype right), (left, right))
LATE(icaltimezone*, icaltimezone_get_utc_timezone, (), ())
