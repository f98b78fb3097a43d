// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Printing of the list of logs as the user sees it, in landscape on the default printer.
#pragma once

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// "Print List": copies headers and rows into the main window's sheet, prints it without a dialog,
// and hands the print image to the content server if there is one. Any error ends it in silence;
// only print bridge and upload show their messages.
void PrintList(AppState& state, Services& services);

// The sheet for a list: the headers in row 1, a log in every row below, nine cells each. Of a
// comment the first 20 characters.
void FillListSheet(const ListView& list, F1Book& sheet);

}  // namespace logbook
