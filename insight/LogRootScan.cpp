// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The routines of LogFiles.h that touch the disk.

#include <algorithm>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "insight/LogFiles.h"
#include "insight/LogRootWalk.h"

namespace logbook::insight {

std::vector<std::string> ScanLogRoot(const Machine& machine, std::string_view root) {
  std::vector<std::string> logs = LogRootWalk(NativePath(machine, root)).Names();
  SortLogNames(logs);
  return logs;
}

LogFiles LoadLogFiles(const Machine& machine, std::string_view root, std::string_view folder) {
  const std::string native = NativePath(machine, root);
  try {
    return LogRootWalk(native).Load(std::string(folder));
  } catch (const RunTimeError&) {
    return {native, std::string(folder), {}};
  }
}

void SortLogNames(std::vector<std::string>& names) {
  std::vector<std::pair<std::string, std::string>> sorted;
  sorted.reserve(names.size());
  for (std::string& name : names) {
    std::string upper = UpperCaseText(name);
    sorted.emplace_back(std::move(upper), std::move(name));
  }
  std::sort(sorted.begin(), sorted.end());
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = std::move(sorted[i].second);
}

}  // namespace logbook::insight
