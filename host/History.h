// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The past of a demonstration workstation: logs as a logbook and its operator would have left them
// over months, snapshot, ticks and comment included.
#pragma once

#include <string>
#include <vector>

#include "host/Calendar.h"
#include "host/Instrument.h"
#include "host/Workstation.h"

namespace logbook::host {

struct History {
  Instrument instrument;
  int logs = 0;     // how many
  LocalTime until;  // the last one is made on this day, at no later hour
  std::vector<Damage> damages;
  std::size_t least_log_bytes = 0;
};

// Makes the logs under the workstation's log root, which is made if it is missing. Their numbers
// follow those of the logs that are there; a folder that exists is never touched, the next free
// number of its day is taken. Leaves the ticks of the last log in logbook.ini, as a logbook does.
// Returns the folders' names in the order of time. Raises std::runtime_error if a file cannot be
// written or a day is full (256 logs).
std::vector<std::string> MakeHistory(const Workstation& workstation, const History& history);

}  // namespace logbook::host
