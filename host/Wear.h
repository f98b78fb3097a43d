// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How the simulated instrument ages. Parts wear from log to log until the maintenance plan has them
// changed, and readings follow them: so the lists and trends of the logbook have something to show.
// Everything here is a pure function of the log's number, counted from 0 over all logs of a
// workstation.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace logbook::host {

// The parts whose age moves readings, and the season, which moves temperatures.
enum class Wear { kNone, kSeason, kCones, kMultiplier, kOil, kTubing, kFilter, kTorch };

// The age of a part at this log: 0 when it is new, rising towards 1 until it is changed. The season
// goes from -1 to 1 and back. kNone is 0.
double WearAt(int log_number, Wear part);

inline constexpr int kMaintenanceItems = 18;

// Which of the 18 jobs were done at this log: those that the plan has due. Log 0 is the first start
// of the instrument and has none.
std::array<bool, kMaintenanceItems> JobsDoneAt(int log_number);

// What the operator wrote about them: one or two lines, UTF-8, joined with CR LF and without one at
// the end; empty now and then. The operator's own language is that of the code page's number.
std::string CommentAt(int log_number, int code_page);

// A number from -1 to 1, the same one for the same arguments on every machine: the scatter of value
// "row" of quantity "quantity" at a log of the instrument that the seed stands for.
double Scatter(std::uint64_t seed, int log_number, std::uint32_t quantity, int row);

// Likewise a whole number from 0 to limit - 1.
int Pick(std::uint64_t seed, int log_number, std::uint32_t quantity, int row, int limit);

}  // namespace logbook::host
