// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The six value columns of the list. A column is a category and a catalogue row; header and cells
// are derived from them at every fill. A cell is a value in the row's format, "N/A" where the row
// does not apply to the log's instrument, or empty where the log's file or line is missing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "state/AppState.h"

namespace logbook {

// Each fills value column `column` (1 to 6), which is list column `column` + 2 and sub-item
// `column` + 1, with row `item` of its catalogue: the header first, then the cell of each log from
// 1 to LogCount. A cell without file or line stays as it is. The category text is not used. All
// raise kSubscriptOutOfRange for an item outside the catalogue's array, before anything is
// written.

// Numbers of auser.txt by MeterItems. A number that cannot be read counts as 0. Raises what
// opening a snapshot file raises before one has been opened in the fill; later failures, of reading
// too, count as 0.
void FillMeterList(AppState& state, std::int16_t column, const std::string& category, int item);

// The same for aall.txt and AnalogItems.
void FillAnalogList(AppState& state, std::int16_t column, const std::string& category, int item);

// Variables of the macro files by TuneItems. Raises what opening a macro file raises (an item of
// the unfilled rows has no file name, so the log folder itself is opened: kPathFileAccess),
// kOverflow for a flag that does not fit 16 bits or a number too large for a double, and
// kInvalidProcedureCall for a text without its quotes.
void FillTuneList(AppState& state, std::int16_t column, const std::string& category, int item);

// The categories as logbook.ini names them.
inline constexpr std::string_view kMeterCategory = "Meter";
inline constexpr std::string_view kTuneCategory = "Tune";
inline constexpr std::string_view kAnalogCategory = "Analog";

// What a fill with this choice will ask of each log; a choice that means nothing adds nothing.
void ExpectColumn(const AppState& state, const ColumnChoice& choice, SnapshotWants& wants);

// The header of a row: its name, with " (unit)" behind it if it has a unit.
std::string ColumnHeader(std::string_view name, std::string_view unit);

}  // namespace logbook
