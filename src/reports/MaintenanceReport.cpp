// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/MaintenanceReport.h"

#include <string>
#include <vector>

#include "base/Profile.h"
#include "text/LeadingNumber.h"

namespace logbook {

namespace {

constexpr std::size_t kBuffer = 512;

// The ticks of all items, by item.
std::vector<std::string> TicksIn(ReportSource& log) {
  std::vector<std::string> names;
  names.reserve(kItemHeaderCount);
  for (int item = 0; item < kItemHeaderCount; ++item)
    names.push_back("Item" + std::to_string(item));
  const std::vector<std::string_view> keys(names.begin(), names.end());
  return GetProfileStrings(log.TheMachine(), "Maintenance", keys, "0", kBuffer, log.Descriptor());
}

}  // namespace

std::string MaintenanceText(ReportSource& log, const Catalogues& catalogues) {
  const std::vector<std::string> ticks = TicksIn(log);
  std::string text;
  for (int item = 0; item < kItemHeaderCount; ++item) {
    if (LeadingNumber(ticks[static_cast<std::size_t>(item)]) == 1)
      text.append(RowAt(catalogues.ItemHeaders, item)).append("\r\n");
  }
  return text;
}

std::string MaintenanceText(const Machine& machine, const Catalogues& catalogues,
                            std::string_view log_folder) {
  ReportSource log(machine, log_folder);
  return MaintenanceText(log, catalogues);
}

}  // namespace logbook
