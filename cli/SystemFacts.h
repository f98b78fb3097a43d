// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system that the program runs on, for whoever has to understand a fault at a distance.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace logbook::cli {

// What it is: name and value of each fact; a value that cannot be told is empty. UTF-8. Raises
// nothing.
std::vector<std::pair<std::string, std::string>> SystemFacts();

// The folder of the user, a native path with slashes and none at its end; empty if the system names
// none.
std::string UserFolder();

// The time of the clock as YYYY-MM-DD HH:MM:SS and the distance from UTC.
std::string ClockText();

}  // namespace logbook::cli
