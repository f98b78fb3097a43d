// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Local times of the workstation as whole seconds, and their texts.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace logbook::host {

using LocalTime = std::chrono::local_seconds;

// The workstation's clock, in its local time.
LocalTime Now();

// The time that a text "YYYY-MM-DD" (at 17:00:00) or "YYYY-MM-DDTHH:MM:SS" names; empty if the
// text has another form or names no day of the calendar.
std::optional<LocalTime> ParseTime(std::string_view text);

std::string FolderDate(LocalTime time);   // YYMMDD, the first six characters of a folder's name
std::string LogFileDate(LocalTime time);  // MM/DD/YYYY HH:MM:SS, key "Date" of logfile.ini
std::string StampText(LocalTime time);    // YYYY/MM/DD HH:MM:SS, in reports and running logs

}  // namespace logbook::host
