// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Reading the handshake cell: start, recording and viewer poll it for the number that it holds
// (docs/host-link.md).
#pragma once

#include "state/Services.h"

namespace logbook {

// The number that the handshake cell reads; 0 for an empty text, infinity for a number too large
// for a double, which is thus another one than all that have a meaning. Raises nothing of its own.
double CellValue(const HandshakeCell& cell);

}  // namespace logbook
