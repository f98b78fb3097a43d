// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the printed list and the printed reports share on their sheets: title, font, header, footer.
#pragma once

#include <string>

#include "state/F1Report.h"

namespace logbook {

// Titles the book (string 112) and empties the whole sheet, which stays selected.
void BeginSheet(F1Book& sheet);

// Sets the font of the whole sheet and of the book (strings 105 and 106), header and footer, fits
// all columns and sets the orientation.
void FinishSheet(F1Book& sheet, bool landscape);

// The code that selects the sheet's font: &"Courier"&9.
std::string FontCode();

}  // namespace logbook
