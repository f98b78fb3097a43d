// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Some numbers of a positional snapshot file (aall.txt, auser.txt) that is at hand as a whole. Its
// fields are those of snapshot/SequentialReader.h; the fields between the wanted ones are passed
// over unread.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace logbook {

// The numbers of these rows, counted from 0 and given in ascending order: 0 for a row behind the
// end of the file and for a number too large for a double. Raises nothing.
std::vector<double> NumbersAt(std::string_view bytes, std::span<const int> rows);

}  // namespace logbook
