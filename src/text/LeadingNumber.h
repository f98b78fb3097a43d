// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The numeric reading of a text, used for every option, macro value, snapshot word, tick and
// handshake value. Never depends on the locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace logbook {

// The number that the text begins with: blanks and tabs in front are skipped, then sign, digits,
// point and exponent ("E" or "e") are taken as far as they form a number; blanks inside end it. A
// prefix "&H" (or "&h") reads hexadecimal digits instead, without a sign: "&HFFFF" is 65535. 0 if
// the text does not begin with a number or holds one too small for a double. Raises kOverflow if
// the number is too large for a double.
double LeadingNumber(std::string_view text);

// The same; nothing if the text does not begin with a number.
std::optional<double> FindLeadingNumber(std::string_view text);

// The same, rounded to a whole number (halves to the nearest even one) that fits 16 bits. Raises
// kOverflow if it does not fit.
std::int16_t LeadingInt16(std::string_view text);

}  // namespace logbook
