// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the verbs on folders of logs share: the option --log-root and what stands in its place, the
// way from LOG to a folder, and the index of a root with its progress on the terminal.
#pragma once

#include <string>
#include <vector>

#include "Frame.h"
#include "insight/LocalDate.h"
#include "insight/LogIndex.h"
#include "insight/LogReading.h"

namespace logbook::cli {

// The folders that --log-root names, as typed.
struct LogRootOptions {
  std::vector<std::string> typed;
};

// Adds --log-root to a verb; it may stand several times.
void AddLogRootOption(CLI::App& verb, LogRootOptions& options);

// The native paths of the roots: those that were typed, else $LOGBOOK_ROOT, else that of the
// workstation at this home, else that of the demonstration: $LOGBOOK_DEMO, or where that is not
// set, and this is told on standard error, the folder demo of the working folder, or the one that
// "quorex-host demo" makes in the user's data folder. Raises UserError if there is none of them,
// and kPathNotFound, with the root in the call's subject, for one that is no folder.
std::vector<std::string> FindLogRoots(Call& call, const LogRootOptions& options);

// A log by its root (native path) and folder name.
struct LogPlace {
  std::string root;
  std::string folder;
};

// The log that LOG names: a path to a folder, or the name of a folder below one of the roots.
// Raises kPathNotFound, with LOG in the call's subject, if there is no such folder.
LogPlace FindLog(Call& call, const LogRootOptions& options, const std::string& typed);

// Its reading.
insight::LogReading ReadLogAt(const Call& call, const Catalogues& catalogues,
                              const LogPlace& place);

// The same for a log that the user named. Raises UserError for a folder that cannot be opened or
// holds no file of a log.
insight::LogReading ReadNamedLog(const Call& call, const Catalogues& catalogues,
                                 const LogPlace& place);

// The roots that are used unless others are named, as far as they are there: nothing is written
// into them either.
std::vector<std::string> UsualRoots(const Call& call);

// How an index is used from here: what goes wrong without harm is told on standard error.
insight::IndexSettings IndexSettingsFor(const Call& call);

// The day that --today names, YYYY-MM-DD; that of the clock for an empty text. Raises WrongUse for
// any other text.
insight::LocalDay TodayOf(const std::string& typed);

// A mistake of the user in words for him; ends the verb with its trouble status.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace logbook::cli
