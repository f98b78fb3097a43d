// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What lies where in the index of logs: the columns beside those of the catalogue rows, and the
// record of a log. Used by IndexUpdate and IndexSearch. Pure.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "insight/LogReading.h"
#include "insight/ValueColumn.h"

namespace logbook::insight {

// The columns 0 to kAllRows - 1 are the catalogue rows by PlaceOf; of a text row the number is that
// of its text. These follow.
enum class SpecialColumn {
  kLive = kAllRows,  // state 1: the log is there; 0: it was removed or read anew
  kDate,             // state 1: number is the date in seconds; 0: none
  kName1,            // the first six bytes of the folder's name in upper case, as a number
  kName2,            // the six behind them
  kTicks,            // a bit for each item
  kFlags,            // state: the flags below
  kStates,           // a bit for each state that any value has
  kOptions,          // the twelve options from here on, in the order of kOptionKeys
};
inline constexpr int kOptionCount = 12;
inline constexpr int kColumnCount = static_cast<int>(SpecialColumn::kOptions) + kOptionCount;

inline constexpr std::uint8_t kAutomaticFlag = 1;
inline constexpr std::uint8_t kTicksFlag = 2;
inline constexpr std::uint8_t kCommentFlag = 4;

static_assert(kOptionKeys.size() == kOptionCount);

// The number of an option's column.
int ColumnOfOption(double LogOptions::*option);

// What is kept of a log beside its values, for showing it.
struct LogRecord {
  std::uint64_t Fingerprint = 0;
  std::string Date;
  std::string Comment;
  std::vector<std::string> RefusedFiles;
  bool operator==(const LogRecord&) const = default;
};

// The bytes of a record, with a checksum; and the record of such bytes, nothing if they are
// damaged.
std::string PackRecord(const LogRecord& record);
std::optional<LogRecord> UnpackRecord(std::string_view bytes);

// The numbers of the columns kName1 and kName2: names compare as these pairs of numbers do.
double NameNumber(std::string_view folder, std::size_t from);

}  // namespace logbook::insight
