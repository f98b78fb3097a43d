// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/HandshakeCell.h"

#include "text/LeadingNumber.h"

namespace logbook {

double CellValue(const HandshakeCell& cell) {
  return LeadingNumber(cell.Text());
}

}  // namespace logbook
