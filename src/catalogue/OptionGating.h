// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Which catalogue rows apply to the instrument of a log. The instrument's options stand in section
// "OPTION" of the log's logfile.ini (docs/file-formats.md). A disabled row has no meaning on that
// instrument and reads "N/A"; an omitted row is left out of a report altogether.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"

namespace logbook {

// The options of one log by their keys, each the leading number of its text; 0 where file, section
// or key is missing.
struct LogOptions {
  double LENS = 0;  // LENS, LENS2 and LENS3 together name the lens family
  double LENS2 = 0;
  double LENS3 = 0;
  double Security = 0;
  double STYLEB = 0;
  double NEW_RF = 0;
  double QPTYPE = 0;
  double AFC = 0;
  double SC = 0;
  double OPGS = 0;
  double PMP2 = 0;  // decides nothing
  double COLOPGS = 0;
};

// The keys of section "OPTION" with their members, in the order of the section.
struct OptionKey {
  std::string_view Key;
  double LogOptions::*Member;
};
inline constexpr auto kOptionKeys = std::to_array<OptionKey>({
    {"LENS", &LogOptions::LENS},
    {"LENS2", &LogOptions::LENS2},
    {"LENS3", &LogOptions::LENS3},
    {"Security", &LogOptions::Security},
    {"STYLEB", &LogOptions::STYLEB},
    {"NEW_RF", &LogOptions::NEW_RF},
    {"QPTYPE", &LogOptions::QPTYPE},
    {"AFC", &LogOptions::AFC},
    {"SC", &LogOptions::SC},
    {"OPGS", &LogOptions::OPGS},
    {"PMP2", &LogOptions::PMP2},
    {"COLOPGS", &LogOptions::COLOPGS},
});

// The options in the bytes of a logfile.ini. A text too large for a double counts as infinite, so
// it is neither 0 nor 1. Raises nothing.
LogOptions ParseLogOptions(const Machine& machine, std::string_view logfile_bytes);

// The lens family: 0 plain lens stack, 1 Lumarin, 2 Varion TRZ(cs), 3 Varion TRZ(ce). LENS2 counts
// only where LENS is 1, LENS3 only where LENS2 is 1 as well.
int LensMode(double lens, double lens2, double lens3);
int LensMode(const LogOptions& options);

// True if a tune row of this group belongs to a lens family other than the log's. Groups 5, 7, 9
// and 11 are those of the lens families 0 to 3; no other group is ever disabled.
bool IsDisabledTuneParam(std::int16_t group, double lens, double lens2, double lens3);

// What the flags of a macro file decide; 0 where a flag is missing.
struct MacroFlags {
  std::int16_t ColOpgs = 0;  // OPT_COLOPGS
  std::int16_t Clmd = 0;     // CLMD
};

// True if a tune row does not apply by its lens family or by the flags of its macro file: the
// reaction cell gases and the doubly charged mass. The same for the list and for tune.bin.
bool IsDisabledTuneRow(int row, std::int16_t group, const LogOptions& options,
                       const MacroFlags& flags);

// True if the list hides the value of a tune row of this group: the instrument name.
bool IsHiddenInList(std::int16_t group, const LogOptions& options);

// True if a negative number in a tune row of this group stands for a slot that is not in use.
bool NegativeMeansUnused(std::int16_t group);

// True if a row of MeterItems, AnalogItems or SysItems does not apply. A row that no rule names is
// enabled. IsDisabledAnalogParam looks at the row's group and raises kSubscriptOutOfRange for a
// row outside AnalogItems; the others raise nothing.
bool IsDisabledMeterParam(std::int16_t row, const LogOptions& options);
bool IsDisabledAnalogParam(const Catalogues& catalogues, std::int16_t row,
                           const LogOptions& options);
bool IsDisabledSysParam(std::int16_t row, const LogOptions& options);

// True if options bear on a tune row of this group, or on a row of MeterItems or AnalogItems, at
// all; for tune rows the options of the column values (loglist/ColumnValues.h) are among them.
// Where none does, the row is enabled for every log, and there is no need to read them.
bool OptionsBearOnTuneParam(std::int16_t group);
bool OptionsBearOnMeterParam(std::int16_t row);
bool OptionsBearOnAnalogParam(const Catalogues& catalogues, std::int16_t row);

// True if a report leaves the row of AnalogItems or SysItems out.
bool IsOmittedAnalogParam(std::int16_t row, const LogOptions& options);
bool IsOmittedSysParam(std::int16_t row);

}  // namespace logbook
