// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The fonts of the program, from the string table.
#pragma once

#include "state/Control.h"

namespace logbook {

// The font of forms and their controls: strings 101 and 102.
Font FormFont();

// The fixed-pitch font of comment and report boxes: strings 103 and 104.
Font FixedPitchFont();

// The font of printed sheets: strings 105 and 106.
Font SheetFont();

}  // namespace logbook
