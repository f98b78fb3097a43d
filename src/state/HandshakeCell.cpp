// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/HandshakeCell.h"

#include <limits>

#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook {

double CellValue(const HandshakeCell& cell) {
  const std::string text = cell.Text();
  try {
    return LeadingNumber(text);
  } catch (const RunTimeError&) {
    return std::numeric_limits<double>::infinity();
  }
}

}  // namespace logbook
