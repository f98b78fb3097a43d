// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/NativeDisk.h"

#include <utility>

namespace logbook::native {

std::error_code NamesIn(const std::string& folder, std::vector<std::string>& names) {
  std::vector<Entry> entries;
  const std::error_code error = EntriesIn(folder, entries);
  names.clear();
  for (Entry& entry : entries) names.push_back(std::move(entry.name));
  return error;
}

}  // namespace logbook::native
