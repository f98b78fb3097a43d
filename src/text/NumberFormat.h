// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Rendering of a number by a catalogue row's picture. The pictures in use are "0", "0.0" to
// "0.000000" (fixed point), "0.0e-#" to "0.0000000e-#" (scientific), and "0.000e-", which prints
// as "0.000e-#" does.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// The number by a picture. It is taken to 15 significant decimal digits first, then rounded to the
// picture's places, halves away from zero. A negative number that rounds to zero keeps its sign;
// -0.0 has none. Fixed point: at least one digit before the point. Scientific: one digit before
// the point, "e", a minus sign only for a negative exponent, the exponent without leading zeros;
// zero has the exponent 0. A picture without a placeholder "0" is literal and prints itself. The
// point is always ".". The value must be finite. Raises nothing.
std::string FormatNumber(double value, std::string_view picture);

}  // namespace logbook
