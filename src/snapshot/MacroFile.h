// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The macro variable files of a log (sensevar.mac, othervar.mac, resovar.mac, paramvar.mac): text
// lines of the form name, "=", value, in any order (docs/file-formats.md), and the rule by which a
// row of the tune catalogue finds its value in one of them. Of a line longer than 64 KB the
// beginning counts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"

namespace logbook {

// Of a longer line of a macro file the rest does not count, in bytes.
inline constexpr std::size_t kLongestMacroLine = 64 * 1024;

// The names under which a macro file is looked for, in this order: its own and, for sensevar.mac
// and othervar.mac, SENSEVA2.MAC and OTHERVA2.MAC.
std::vector<std::string> MacroFileNames(std::string_view file);

// The path of a macro file in a log folder (with trailing backslash), by the first of its names
// that exists. Nothing if none does. An empty file name gives the folder itself. Raises nothing.
std::optional<std::string> FindMacroFile(const Machine& machine, std::string_view folder,
                                         std::string_view file);

// The lines that bear on one tune row, as UTF-8 without line end; empty where none was found.
struct MacroLines {
  std::string Value;    // holds the row's variable
  std::string ColOpgs;  // holds "OPT_COLOPGS"
  std::string Clmd;     // holds "CLMD"
  bool operator==(const MacroLines&) const = default;
};

// Takes one line of a macro file (UTF-8) into the lines found so far: into the first of the three
// whose name it holds, anywhere and without regard to case (ASCII letters), if it also holds "=".
// A later line replaces an earlier one, so the last match wins. Not anchored: "OPGS" also matches
// a line that holds "OPT_COLOPGS".
void TakeMacroLine(MacroLines& lines, std::string_view line, std::string_view var);

// Reads a macro file line by line to its end. Raises what InputFile raises.
MacroLines ReadMacroLines(const Machine& machine, std::string_view path, std::string_view var);

// The lines of a macro file that hold "=", as UTF-8, in their order. Raises what InputFile raises.
std::vector<std::string> ReadAssignments(const Machine& machine, std::string_view path);

// The same for the bytes of a macro file. Raises nothing.
std::vector<std::string> AssignmentsIn(const CodePage& code_page, std::string_view bytes);

// ReadMacroLines over lines that have been read.
MacroLines FindMacroLines(std::span<const std::string> assignments, std::string_view var);

// All that stands behind the first "=" of a line; empty if there is none.
std::string_view BehindEqualSign(std::string_view line);

// The number of a value line, by the leading-number rule. Raises kOverflow if it is too large.
double MacroNumber(std::string_view line);

// The flag of an OPT_COLOPGS or CLMD line: its number rounded to 16 bits, halves to the nearest
// even one; 0 for an empty line. Raises kOverflow if it does not fit.
std::int16_t MacroFlag(std::string_view line);

// The text of a value line between its first and its second double quote. Raises
// kInvalidProcedureCall if it has fewer than two.
std::string MacroText(std::string_view line);

}  // namespace logbook
