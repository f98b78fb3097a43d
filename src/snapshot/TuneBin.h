// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// tune.bin, the extract of a log's tune values that the host prints a tune report from: in spite of
// its name a text of two rows (docs/file-formats.md).
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/Machine.h"

namespace logbook {

// One column: the label of a tune row and its value, "N/A" or empty where there is none.
struct TuneCell {
  std::string Name;
  std::string Value;
  bool operator==(const TuneCell&) const = default;
};

// The file's text (UTF-8) for these columns: the names, each with a tab behind it, CR LF, the
// values likewise, CR LF, and an empty line. Raises nothing.
std::string TuneBinText(std::span<const TuneCell> cells);

// Writes the file anew in the machine's code page; the path has a folder. Raises what WriteMadeFile
// raises; an older file then stays as it was.
void WriteTuneBin(const Machine& machine, std::string_view path, std::span<const TuneCell> cells);

}  // namespace logbook
