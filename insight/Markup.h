// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Small help for writing SVG and HTML. Pure; none raises anything.
#pragma once

#include <string>
#include <string_view>

namespace logbook::insight {

// The text for use between tags and in quoted attributes: the five characters with a meaning as
// entities; control characters that XML does not know, and bytes that are no UTF-8, as U+FFFD.
std::string EscapeMarkup(std::string_view text);

// A length in a drawing: at most two decimals, with a point.
std::string Length(double value);

}  // namespace logbook::insight
