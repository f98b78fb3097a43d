// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/MaintenanceReport.h"

#include <string>
#include <vector>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook {

namespace {

constexpr std::size_t kBuffer = 512;

// A file that cannot be read, or is too large for a profile, has no keys.
std::string BytesOf(const Machine& machine, const std::string& profile) {
  try {
    return ReadFile(machine, profile, kLargestProfile);
  } catch (const RunTimeError&) {
    return {};
  }
}

// The ticks of all items, by item.
std::vector<std::string> TicksIn(const Machine& machine, const std::string& profile) {
  std::vector<std::string> names;
  names.reserve(kItemHeaderCount);
  for (int item = 0; item < kItemHeaderCount; ++item)
    names.push_back("Item" + std::to_string(item));
  const std::vector<std::string_view> keys(names.begin(), names.end());
  return GetProfileStrings(machine, "Maintenance", keys, "0", kBuffer, BytesOf(machine, profile));
}

}  // namespace

std::string MaintenanceText(const Machine& machine, const Catalogues& catalogues,
                            std::string_view log_folder) {
  const std::vector<std::string> ticks = TicksIn(machine, std::string(log_folder) + "logfile.ini");
  std::string text;
  for (int item = 0; item < kItemHeaderCount; ++item) {
    if (LeadingNumber(ticks[static_cast<std::size_t>(item)]) == 1)
      text.append(RowAt(catalogues.ItemHeaders, item)).append("\r\n");
  }
  return text;
}

}  // namespace logbook
