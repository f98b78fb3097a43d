// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The arrangements: text resources of type "LOGBOOK_RES" with a list of left, top, width, height in
// twips for each control of a window (src/resources/*/arrange*.txt). The place of a list in the
// text decides the control.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "state/Control.h"

namespace logbook {

// Whole numbers between blanks are read like this one: a sign and a fraction may stand there, which
// is rounded. Raises kTypeMismatch for anything else and kOverflow beyond 32 bits.
int WholeNumber(std::string_view text);

// The first `count` places of an arrangement. Raises kTypeMismatch if the resource is missing or
// short or holds something else than numbers.
std::vector<Rect> LoadPlaces(std::string_view id, std::size_t count);

}  // namespace logbook
