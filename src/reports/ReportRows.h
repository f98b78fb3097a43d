// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Which catalogue rows a value report prints on an instrument, and which of them read "N/A"
// whatever the snapshot holds. The bit reports put the rows of the new RF unit in the places of
// the rows that they replace.
#pragma once

#include <cstdint>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "catalogue/OptionGating.h"

namespace logbook {

// The places of a bit report in their order.
struct BitPlace {
  std::int16_t Row = 0;   // row of the catalogue that prints here
  bool Disabled = false;  // it reads "N/A"
};

// The places of the bit out and the bit in report for these options. Raise nothing.
std::vector<BitPlace> BitOutPlaces(const LogOptions& options);
std::vector<BitPlace> BitInPlaces(const LogOptions& options);

}  // namespace logbook
