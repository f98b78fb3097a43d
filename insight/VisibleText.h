// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Text of people and files as a terminal may be given it. A comment or a name can hold characters
// that a terminal obeys in place of showing them, or that turn the direction of what is beside
// them. Pure; raises nothing.
#pragma once

#include <string>
#include <string_view>

namespace logbook::insight {

// The text with each control character but the line feed and the tab, and each character that
// changes the direction of text, written as "\x1B" or "\u202E", and each byte that is no UTF-8 as
// "\xFF". All else, a backslash too, stays as it is.
std::string VisibleText(std::string_view text);

// The same of a name or another text that has to stay in its line: line feed and tab too.
std::string VisibleName(std::string_view name);

}  // namespace logbook::insight
