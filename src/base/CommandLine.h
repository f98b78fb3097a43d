// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The command line of this program as one text, UTF-8, without the program's name.
#pragma once

#include <string>

namespace logbook {

// Where the system hands over words, they are joined by single blanks. Where it hands over a line,
// that is taken as it is, from the first character behind the program's name that is no blank or
// tab.
std::string CommandLineOf(int argc, const char* const* argv);

}  // namespace logbook
