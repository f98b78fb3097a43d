// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The main window's arrangement, from the text resource "IDRES_LOGBOOK_ARRANGE" of type
// "LOGBOOK_RES" (src/resources/*/arrange.txt).
#pragma once

#include <string>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// Sizes window, list and buttons and stands the buttons in a row at the lower right. Raises
// kTypeMismatch if the resource is missing or short or holds something else than numbers.
void ArrangeMainWindow(AppState& state, Services& services);

// The same from a given text: lists of left, top, width, height in twips, each ended by one NUL.
void ArrangeMainWindow(AppState& state, Services& services, const std::string& text);

}  // namespace logbook
