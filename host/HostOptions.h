// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What a running host is told on its command line.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/Instrument.h"
#include "host/Snapshot.h"
#include "host/Workstation.h"

namespace logbook::host {

// How far the host takes part in the conversation.
enum class Attention {
  kFull,
  kDead,  // answers requests, never touches the cell
  kDeaf,  // owns its name and never answers anything
};

struct HostOptions {
  std::string id;
  Workstation workstation;
  Instrument instrument;
  Attention attention = Attention::kFull;
  std::chrono::milliseconds slow{0};  // a job takes so long
  std::chrono::milliseconds busy{0};  // the cell is held so long at start and after every job
  std::vector<Damage> damages;
  std::size_t least_log_bytes = 0;

  // The logbook's program, started when the host is ready; none if empty.
  std::string start_logbook;
  bool ce = false;
  bool auto_rec = false;
  bool for_logbook_lifetime = false;  // end when a logbook has come and gone
};

}  // namespace logbook::host
