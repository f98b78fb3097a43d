// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The scales of a drawn trend: which values and days an axis spans, where its ticks stand and what
// they say. Values rise upwards, days go to the right. Pure; none raises anything.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "insight/LocalDate.h"

namespace logbook::insight {

struct Tick {
  double place = 0;  // value or day
  std::string label;
};

struct Axis {
  double low = 0;
  double high = 1;  // always more than low
  std::vector<Tick> ticks;

  // The place between low (0) and high (1).
  double Share(double place) const { return (place - low) / (high - low); }
};

// An axis of values that holds all of these, with about so many ticks at round numbers, the outer
// two at its ends. Equal values get some room on both sides; no values give 0 to 1.
Axis ValueAxis(std::span<const double> values, int ticks);

// An axis of days from one moment to another with at most so many ticks at round dates: hours,
// days, Mondays, months or years. A span of no length gets half a day on both sides.
Axis TimeAxis(LocalTime first, LocalTime last, int ticks);

// A number in its shortest form with at most so many significant digits: "1.5", "0", "1e-05".
inline constexpr int kShortDigits = 6;
std::string ShortNumber(double value, int digits = kShortDigits);

}  // namespace logbook::insight
