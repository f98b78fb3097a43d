// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The reading of a log: all that its files say, made from their bytes alone. A value is a number
// or a text with a state, so that a zero stands only for a zero; the states come from the same
// readers and predicates as the list and the reports, and a value with the state kOk prints as they
// print it.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/OptionGating.h"
#include "insight/CatalogueRow.h"
#include "insight/LogFiles.h"
#include "insight/MacroLookup.h"

namespace logbook::insight {

enum class ValueState {
  kOk,
  kNotApplicable,  // the instrument has no such value; list and reports print "N/A"
  kFileMissing,    // the snapshot or macro file is missing or cannot be read
  kFileShort,      // the file ends before the value, or does not name its variable
  kNoNumber,       // no number or text stands in its place, or one too large
};

// "ok", "na", "missing", "short", "nonumber".
std::string_view NameOf(ValueState state);
std::optional<ValueState> FindState(std::string_view name);

struct RowValue {
  ValueState State = ValueState::kFileMissing;
  double Number = 0;  // kOk: of a number row; 0 or 1 of a bit row; else 0
  std::string Text;   // kOk: of a text row (UTF-8); else empty
  bool operator==(const RowValue&) const = default;
};

// A folder name is no identity: numbers are given again after deletion.
struct LogIdentity {
  std::string Root;               // native path
  std::string Folder;             // name of the folder
  std::string Date;               // key "Date" as it stands, as the list shows it
  std::uint64_t Fingerprint = 0;  // FingerprintOf
  bool operator==(const LogIdentity&) const = default;
};

struct LogReading {
  LogIdentity Identity;
  // The date text as a time of the local calendar; nothing if it is missing or impossible.
  std::optional<std::chrono::local_seconds> Date;
  LogOptions Options;       // 0 where missing, as everywhere
  std::string Comment;      // lines joined by line feeds, none behind the last
  bool HasComment = false;  // comment.txt is there and can be read
  bool Automatic = false;   // the comment is that of an automatic record
  // The ticks as they stand. An automatic record repeats those of the last confirmed one.
  std::array<bool, kItemHeaderCount> Ticks = {};
  bool HasTicks = false;  // section "Maintenance" has any of its keys: the record was confirmed
  std::vector<RowValue> Values;           // kAllRows of them by PlaceOf
  std::vector<std::string> RefusedFiles;  // there, but not to be opened

  const RowValue& At(const RowId& id) const {
    return Values[static_cast<std::size_t>(PlaceOf(id))];
  }
};

// Makes readings, for one thread. What can be prepared once for all of them is, so one reader for
// many logs costs less than ReadLog for each.
class LogReader {
 public:
  // The references must outlive the object.
  LogReader(const CodePage& code_page, const Catalogues& catalogues);
  ~LogReader();

  // The reading of these files. Takes any bytes; raises nothing.
  LogReading Read(const LogFiles& files) const;

 private:
  const CodePage& code_page_;
  const Catalogues& catalogues_;
  mutable MacroLookup macros_;  // remembers, but always finds the same
  struct LastGates;
  std::unique_ptr<LastGates> gates_;
};

// The reading of one log by a reader of its own.
LogReading ReadLog(const CodePage& code_page, const Catalogues& catalogues, const LogFiles& files);

// The value as list and report print it, without its unit: a number in the row's picture, a bit's
// reading, a text, "N/A". Empty for the other states.
std::string PrintedText(const Catalogues& catalogues, const RowId& id, const RowValue& value);

// The time of a date text "MM/DD/YYYY HH:MM:SS"; nothing for any other text and for days and hours
// that do not exist.
std::optional<std::chrono::local_seconds> ParseLogDate(std::string_view text);

// The first line of a comment: what the list shows.
std::string_view FirstLine(std::string_view comment);

// The sub-texts of a log that people wrote or machines printed, by their files: acqlog.txt,
// sequence.log, chnseq.log, errlog.txt, ceerrlog.txt, tune.rpt.
inline constexpr auto kTextLogs = std::to_array<std::string_view>(
    {"acqlog.txt", "sequence.log", "chnseq.log", "errlog.txt", "ceerrlog.txt", "tune.rpt"});

}  // namespace logbook::insight
