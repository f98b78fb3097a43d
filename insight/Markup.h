// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Small help for writing SVG and HTML. Pure; none raises anything.
#pragma once

#include <string>
#include <string_view>

namespace logbook::insight {

// The text without what XML does not know: control characters but tab and line ends, and bytes that
// are no UTF-8, become U+FFFD.
std::string CleanText(std::string_view text);

// The text for use between tags and in quoted attributes: the five characters with a meaning as
// entities; cleaned as above.
std::string EscapeMarkup(std::string_view text);

// A length in a drawing: at most two decimals, with a point.
std::string Length(double value);

}  // namespace logbook::insight
