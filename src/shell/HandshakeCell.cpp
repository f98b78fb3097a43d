// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "shell/HandshakeCell.h"

#include "shell/LeadingNumber.h"

namespace logbook {

double CellValue(const HandshakeCell& cell) {
  return LeadingNumber(cell.Text());
}

}  // namespace logbook
