// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is wrong with a log root, or soon will be: each finding with a code, the log that it is of,
// what it means and what to do (docs/insight.md lists them). Looking at the disk is apart from
// judging what was seen; nothing is changed.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"
#include "catalogue/ItemRecord.h"
#include "insight/LocalDate.h"
#include "insight/LogFiles.h"
#include "insight/LogReading.h"

namespace logbook::insight {

// What every finding of a code has in common.
struct FindingKind {
  std::string_view code;
  std::string_view meaning;  // a sentence without its full stop
  std::string_view action;   // the same
};

inline constexpr auto kFindingKinds = std::to_array<FindingKind>({
    {"unfinished", "the record was never confirmed: a recording was cut short",
     "delete the log if nobody needs it"},
    {"date-missing", "the log has no date, so the list shows none and no chart holds it",
     "write key Date of section LogFile into logfile.ini, MM/DD/YYYY HH:MM:SS"},
    {"date-impossible", "the date is no date of the form MM/DD/YYYY HH:MM:SS",
     "correct key Date of section LogFile in logfile.ini"},
    {"date-double", "two or more logs bear the same date, so their order is open",
     "see whether one is a copy of the other"},
    {"comment-missing", "the log has no comment.txt; the list shows no comment",
     "write a comment.txt with at least a line end"},
    {"comment-empty", "comment.txt has no byte, which ends the logbook with a run-time error",
     "put a line end into it, or delete it"},
    {"snapshot-missing", "a snapshot file is missing; its values are empty and its report too",
     "see whether the host could write it"},
    {"snapshot-short", "a snapshot file ends before its last row; the list shows 0 for what lacks",
     "do not trust the zeros of this log"},
    {"snapshot-long", "a snapshot file holds more fields than the catalogue has rows",
     "see whether its values are shifted by a field too many"},
    {"macro-missing", "a macro file is missing; its tune values are empty",
     "see whether the host could write it"},
    {"file-unreadable", "a file, or the folder of the log, is there and cannot be read",
     "see to its owner and rights, and to what it leads to if it is a link"},
    {"file-hidden", "a hidden file, which will keep the log from being deleted",
     "delete the file or rename it without the dot"},
    {"file-read-only", "a read-only file, which will keep the log from being deleted",
     "give its owner the right to write it"},
    {"sub-folder", "a folder within the log, which will keep the log from being deleted",
     "move it elsewhere"},
    {"odd-name", "the folder is not named YYMMDDnn, and counts as a log all the same",
     "move it elsewhere if it is no log"},
    {"package-left", "a package that an upload left behind",
     "delete it when the server has the log"},
    {"staging-left", "what an upload staged and did not hand over",
     "delete it when the server has the log"},
    {"list-full", "the list shows the first 256 logs only, and the newest not at all",
     "archive old logs and delete them"},
    {"list-overflow", "at today's rate the list will soon be full, or it is just full",
     "archive old logs and delete them before that day"},
    {"text-foreign", "a text is not in the code page of the machine",
     "see which code page it is in"},
});

// Null for an unknown code.
const FindingKind* FindKind(std::string_view code);

struct Finding {
  std::string_view code;  // of kFindingKinds
  std::string log;        // folder name; empty for a finding of the root as a whole
  std::string detail;     // file, field counts, day; may be empty
  bool operator==(const Finding&) const = default;
};

// An entry of a log folder, as far as deletion cares.
struct EntryFacts {
  std::string name;
  bool folder = false;
  bool read_only = false;  // its owner may not write it
};

// The findings of one log.
std::vector<Finding> CheckLog(const CodePage& code_page, const LogFiles& files,
                              const LogReading& reading, const std::vector<EntryFacts>& entries);

// What is seen of a root besides the insides of its logs.
struct RootFacts {
  struct Log {
    std::string folder;
    std::optional<LocalTime> date;
  };
  std::vector<Log> logs;
  std::vector<std::string> files;   // files directly in the root
  std::vector<std::string> staged;  // names in the temporary area of the upload
};

// The findings of the root as a whole, on this day. The rate is that of the last 90 days; a list
// that will be full within 90 days is told.
std::vector<Finding> CheckRoot(const RootFacts& facts, LocalDay today);

// The entries of a log folder by its native path; none if it cannot be read. Raises nothing.
std::vector<EntryFacts> LookAtLog(const std::string& native_folder);

// All findings of a root, those of the root first, then log by log in the order of ScanLogRoot.
// Raises kPathNotFound if the root cannot be found.
std::vector<Finding> CheckLogRoot(const Machine& machine, const Catalogues& catalogues,
                                  std::string_view root, LocalDay today);

}  // namespace logbook::insight
