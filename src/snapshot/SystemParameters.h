// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The system parameter snapshot sys.txt: one field for each row of SysItems, by position
// (docs/file-formats.md). All are numbers but the manufacturing stamp of row 83, which is text.
#pragma once

#include <string>
#include <variant>
#include <vector>

#include "snapshot/SequentialReader.h"

namespace logbook {

// "Log Amp/Manufacturing Stamp", the row of SysItems whose field is text.
inline constexpr int kStampRow = 83;

using SystemParameter = std::variant<double, std::string>;

// The fields of the rows from 0, at most 245; fewer if the file ends before. What follows the last
// row's field is left alone. Raises kOverflow for a number too large for a double.
std::vector<SystemParameter> ReadSystemParameters(SequentialReader& file);

// The same for a snapshot of numbers alone (aall.txt, auser.txt): the first `count` of them, or
// fewer if the file ends before.
std::vector<double> ReadNumbers(SequentialReader& file, int count);

}  // namespace logbook
