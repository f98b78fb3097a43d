// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The values of the six catalogues from the bytes of a log's files. Used by LogReading alone.
#pragma once

#include <array>
#include <vector>

#include "base/CodePage.h"
#include "catalogue/OptionGating.h"
#include "insight/CatalogueRow.h"
#include "insight/LogFiles.h"
#include "insight/LogReading.h"
#include "insight/MacroLookup.h"

namespace logbook::insight {

// Whether the rows apply to an instrument, by their places.
enum class Gate : char {
  kApplies,
  kNever,
  kBySwitches,  // a tune row that applies unless the switches of its macro file say no
};
using Gates = std::array<Gate, kAllRows>;

// Those of these options. Raises nothing.
Gates GatesOf(const Catalogues& catalogues, const LogOptions& options);

// What the values are read from.
struct RowSource {
  const CodePage& code_page;
  const Catalogues& catalogues;
  const LogOptions& options;
  const Gates& gates;  // of these options
  const LogFiles& files;
  MacroLookup& macros;  // of the same catalogues
};

// All rows by their places. Raises nothing.
std::vector<RowValue> ReadRows(const RowSource& source);

}  // namespace logbook::insight
