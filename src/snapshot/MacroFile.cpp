// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/MacroFile.h"

#include <algorithm>
#include <cstddef>

#include "base/Files.h"
#include "base/RunTimeError.h"
#include "base/UpperCase.h"
#include "text/LeadingNumber.h"

namespace logbook {
namespace {

std::vector<std::string> TakeAssignments(const CodePage& code_page, InputFile& file) {
  std::vector<std::string> assignments;
  while (!file.AtEnd()) {
    const std::string line = file.ReadLine(kLongestMacroLine);
    if (line.find('=') != std::string::npos) assignments.push_back(code_page.ToUtf8(line));
  }
  return assignments;
}

}  // namespace

std::vector<std::string> MacroFileNames(std::string_view file) {
  std::vector<std::string> names = {std::string(file)};
  if (EqualIgnoringCase(file, "SENSEVAR.MAC")) names.push_back("SENSEVA2.MAC");
  if (EqualIgnoringCase(file, "OTHERVAR.MAC")) names.push_back("OTHERVA2.MAC");
  return names;
}

std::optional<std::string> FindMacroFile(const Machine& machine, std::string_view folder,
                                         std::string_view file) {
  for (const std::string& name : MacroFileNames(file)) {
    std::string path = std::string(folder).append(name);
    if (Exists(machine, path)) return path;
  }
  return std::nullopt;
}

void TakeMacroLine(MacroLines& lines, std::string_view line, std::string_view var) {
  if (line.find('=') == std::string_view::npos) return;
  if (ContainsIgnoringCase(line, var)) {
    lines.Value = line;
  } else if (ContainsIgnoringCase(line, "OPT_COLOPGS")) {
    lines.ColOpgs = line;
  } else if (ContainsIgnoringCase(line, "CLMD")) {
    lines.Clmd = line;
  }
}

MacroLines ReadMacroLines(const Machine& machine, std::string_view path, std::string_view var) {
  MacroLines lines;
  InputFile file(machine, path);
  while (!file.AtEnd()) {
    const std::string line = file.ReadLine(kLongestMacroLine);
    // No trail byte of a double-byte character is an equal sign.
    if (line.find('=') == std::string::npos) continue;
    TakeMacroLine(lines, machine.code_page->ToUtf8(line), var);
  }
  return lines;
}

std::vector<std::string> ReadAssignments(const Machine& machine, std::string_view path) {
  InputFile file(machine, path);
  return TakeAssignments(*machine.code_page, file);
}

std::vector<std::string> AssignmentsIn(const CodePage& code_page, std::string_view bytes) {
  InputFile file(bytes);
  return TakeAssignments(code_page, file);
}

MacroLines FindMacroLines(std::span<const std::string> assignments, std::string_view var) {
  MacroLines lines;
  for (const std::string& line : assignments) TakeMacroLine(lines, line, var);
  return lines;
}

std::string_view BehindEqualSign(std::string_view line) {
  const std::size_t sign = line.find('=');
  return sign == std::string_view::npos ? std::string_view() : line.substr(sign + 1);
}

double MacroNumber(std::string_view line) {
  return LeadingNumber(BehindEqualSign(line));
}

std::int16_t MacroFlag(std::string_view line) {
  return line.empty() ? std::int16_t{0} : LeadingInt16(BehindEqualSign(line));
}

std::string MacroText(std::string_view line) {
  const std::size_t first = line.find('"');
  const std::size_t second = line.find('"', std::min(first, line.size() - 1) + 1);
  if (first == std::string_view::npos || second == std::string_view::npos) {
    throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
  }
  return std::string(line.substr(first + 1, second - first - 1));
}

}  // namespace logbook
