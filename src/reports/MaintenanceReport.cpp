// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/MaintenanceReport.h"

#include "text/CSVMan.h"
#include "text/LeadingNumber.h"

namespace logbook {

std::string MaintenanceText(const Machine& machine, const Catalogues& catalogues,
                            std::string_view log_folder) {
  const std::string profile = std::string(log_folder) + "logfile.ini";
  std::string text;
  for (int item = 0; item < kItemHeaderCount; ++item) {
    std::string tick;
    GetIniString(machine, "Maintenance", "Item" + std::to_string(item), "0", tick, profile);
    if (LeadingNumber(tick) == 1) text.append(RowAt(catalogues.ItemHeaders, item)).append("\r\n");
  }
  return text;
}

}  // namespace logbook
