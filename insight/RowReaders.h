// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The values of the six catalogues from the bytes of a log's files. Used by LogReading alone.
#pragma once

#include <vector>

#include "base/CodePage.h"
#include "catalogue/OptionGating.h"
#include "insight/LogFiles.h"
#include "insight/LogReading.h"
#include "insight/MacroLookup.h"

namespace logbook::insight {

// What the values are read from.
struct RowSource {
  const CodePage& code_page;
  const Catalogues& catalogues;
  const LogOptions& options;
  const LogFiles& files;
  const MacroLookup& macros;  // of the same catalogues
};

// All rows of one catalogue in their order. Raise nothing.
std::vector<RowValue> ReadMeterRows(const RowSource& source);
std::vector<RowValue> ReadAnalogRows(const RowSource& source);
std::vector<RowValue> ReadTuneRows(const RowSource& source);
std::vector<RowValue> ReadSysRows(const RowSource& source);
std::vector<RowValue> ReadBitOutRows(const RowSource& source);
std::vector<RowValue> ReadBitInRows(const RowSource& source);

}  // namespace logbook::insight
