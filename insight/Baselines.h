// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Baselines: readings of logs from when the instrument worked, kept under names in the user's
// configuration, one JSON file each. A baseline holds all values, so it outlives its log; folder
// numbers are given again.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "insight/LogReading.h"

namespace logbook::insight {

// A baseline that cannot be kept, found or understood; the message says which and why.
class BaselineError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A reading as text and back: all of it but the refused files. ParseReading raises BaselineError
// for a text that is none.
std::string ReadingText(const LogReading& reading);
LogReading ParseReading(std::string_view text);

// True for the name of a baseline: letters, digits, "-", "_" and ".", not first, 64 at most.
bool IsBaselineName(std::string_view name);

// A folder of baselines by its native path, such as that of the user's configuration.
class BaselineFolder {
 public:
  explicit BaselineFolder(std::string native_path) : path_(std::move(native_path)) {}

  // Keeps a reading under a name, in place of an older one; makes the folder, for its owner alone.
  void Keep(std::string_view name, const LogReading& reading) const;
  LogReading Find(std::string_view name) const;
  // The names in ascending order; none if there is no folder.
  std::vector<std::string> Names() const;
  void Drop(std::string_view name) const;

 private:
  std::string FileOf(std::string_view name) const;

  std::string path_;
};

// quorex-logbook in the user's folder for configurations, as a native path; empty if the
// environment names no such folder.
std::string ConfigFolder();

}  // namespace logbook::insight
