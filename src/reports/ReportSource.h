// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The files of one log that reports are made from, for one job: the way to the folder is walked
// once, and logfile.ini, which every report asks, is read once. Nothing outlives the object, which
// should not outlive the job.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/FilesBelow.h"
#include "base/Machine.h"
#include "catalogue/OptionGating.h"
#include "snapshot/SequentialReader.h"

namespace logbook {

class ReportSource {
 public:
  // The folder of the log, with its trailing backslash. Raises nothing.
  ReportSource(const Machine& machine, std::string_view folder);

  const Machine& TheMachine() const { return machine_; }
  const std::string& Folder() const { return folder_; }
  // For files that are small as a rule, by names in the folder ".".
  FilesBelow& Below() { return below_; }

  // The bytes of logfile.ini as they were at the first call; none if it is missing, cannot be read
  // or is too large for a profile. Raises nothing.
  const std::string& Descriptor();

  // The options in it. Raises nothing.
  const LogOptions& Options();

  // A snapshot file from its beginning, good until the next call; nothing if it is missing. Raises
  // what InputFile raises.
  std::optional<SequentialReader> OpenSnapshot(std::string_view name);

 private:
  const Machine& machine_;
  const std::string folder_;
  FilesBelow below_;
  std::optional<std::string> descriptor_;
  std::optional<LogOptions> options_;
};

}  // namespace logbook
