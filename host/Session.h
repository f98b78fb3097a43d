// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the user's session offers to a program that is started in it.
#pragma once

#include <string>
#include <vector>

namespace logbook::host {

bool HasDisplay();
bool HasSessionBus();

// Where hosts and logbooks meet, as a help text names it behind "the host".
const char* MeetingPlace();

// A demonstration ties its folders together with links, and ends a session bus of its own.
bool HasDemonstrations();

// Whether somebody at a terminal can be asked.
bool CanAsk();

// Becomes this program with these arguments again, inside a session bus that ends with it. Returns
// only if that fails.
void RestartInOwnBus(const std::vector<std::string>& arguments);

}  // namespace logbook::host
