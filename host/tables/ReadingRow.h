// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rows of the tables of base values, and the check that a table's rows are numbered densely.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "host/InstrumentBuild.h"
#include "host/Wear.h"

namespace logbook::host {

// How a number is written into a file.
enum class Notation { kFixed, kScientific };

// A reading that differs from log to log.
struct ReadingRow {
  int row;                 // position in the file, from 0
  std::string_view label;  // what the position holds; for the reader of the table
  Fitted fitted;           // hardware without which the reading is 0
  double fresh;            // value with all parts new
  double noise;            // largest scatter to either side
  Wear wear;               // part whose age moves the value
  double worn_by;          // added when that part is due for change
  Notation notation;
  int places;  // decimal places
};

// A parameter that is set once in an instrument's life.
struct ParameterRow {
  int row;
  std::string_view label;
  Fitted fitted;
  double usual;   // value as the factory sets it
  double spread;  // largest difference of a single instrument
  Notation notation;
  int places;
};

template <typename Row, std::size_t kSize>
constexpr bool RowsAreDense(const std::array<Row, kSize>& rows) {
  for (std::size_t i = 0; i < kSize; ++i) {
    if (rows[i].row != static_cast<int>(i)) return false;
  }
  return true;
}

}  // namespace logbook::host
