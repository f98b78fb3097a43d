// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Comparing without regard to case, beyond ASCII and never by the locale: the one place for names
// on the disk, in profiles, of keys, windows and resources, and for words of the command line.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// The upper-case letter of a character, or the character itself if it has none. A letter beyond
// ASCII never becomes an ASCII one.
char32_t UpperCase(char32_t character);

// The text (UTF-8) in upper case. Bytes that are no UTF-8 stand as they are. Two names are the
// same name if this gives the same for both.
std::string UpperCaseText(std::string_view text);

// True if the two texts differ in case at most.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

// True if the text ends in this, but for case; an empty end always does.
bool EndsInIgnoringCase(std::string_view text, std::string_view end);

// True if the word stands anywhere in the text, but for case; an empty word always does.
bool ContainsIgnoringCase(std::string_view text, std::string_view word);

}  // namespace logbook
