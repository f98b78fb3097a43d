// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/MacroIndex.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/Files.h"
#include "base/UpperCase.h"

namespace logbook {
namespace {

constexpr std::string_view kColOpgs = "OPT_COLOPGS";
constexpr std::string_view kClmd = "CLMD";
// A file that is indexed.
constexpr std::size_t kSmallFile = 1024 * 1024;

// The bytes of a file, if they are not many.
std::optional<std::string> ReadIfSmall(const Machine& machine, std::string_view path) {
  std::string bytes;
  InputFile file(machine, path);
  while (!file.AtEnd()) {
    const std::string_view piece = file.Buffered();
    if (bytes.size() + piece.size() > kSmallFile) return std::nullopt;
    bytes += piece;
    file.Skip(piece.size());
  }
  return bytes;
}

}  // namespace

MacroIndex::MacroIndex(const CodePage& code_page, std::string_view bytes) {
  for (std::string& text : AssignmentsIn(code_page, bytes)) {
    Line line;
    line.upper = UpperCaseText(text);
    line.text = std::move(text);
    line.pairs = PairsOf(line.upper);
    if (line.upper.find(kColOpgs) != std::string::npos) {
      col_opgs_.push_back(lines_.size());
    } else if (line.upper.find(kClmd) != std::string::npos) {
      clmd_.push_back(lines_.size());
    }
    lines_.push_back(std::move(line));
  }
}

MacroIndex::Pairs MacroIndex::PairsOf(std::string_view text) {
  constexpr unsigned kSpread = 0x9E37;
  Pairs pairs = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    const unsigned pair =
        static_cast<unsigned char>(text[i - 1]) * 256U + static_cast<unsigned char>(text[i]);
    pairs |= Pairs{1} << (pair * kSpread >> 10 & 63);
  }
  return pairs;
}

bool MacroIndex::Holds(const Line& line, std::string_view upper_word, Pairs pairs) {
  return (line.pairs & pairs) == pairs && line.upper.find(upper_word) != std::string::npos;
}

MacroLines MacroIndex::Find(std::string_view var) const {
  const std::string upper_var = UpperCaseText(var);
  const Pairs pairs = PairsOf(upper_var);
  const auto holds_var = [&](const Line& line) { return Holds(line, upper_var, pairs); };
  MacroLines found;
  const auto value = std::find_if(lines_.rbegin(), lines_.rend(), holds_var);
  if (value != lines_.rend()) found.Value = value->text;
  const auto take_last = [&](const std::vector<std::size_t>& places, std::string& text) {
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
      if (holds_var(lines_[*place])) continue;
      text = lines_[*place].text;
      return;
    }
  };
  take_last(col_opgs_, found.ColOpgs);
  take_last(clmd_, found.Clmd);
  return found;
}

std::vector<MacroLines> MacroIndex::Find(std::span<const std::string> vars) const {
  std::vector<MacroLines> found;
  found.reserve(vars.size());
  for (const std::string& var : vars) found.push_back(Find(var));
  return found;
}

std::vector<MacroLines> ReadMacroLines(const Machine& machine, std::string_view path,
                                       std::span<const std::string> vars) {
  if (const std::optional<std::string> bytes = ReadIfSmall(machine, path)) {
    return MacroIndex(*machine.code_page, *bytes).Find(vars);
  }
  std::vector<MacroLines> found(vars.size());
  InputFile file(machine, path);
  while (!file.AtEnd()) {
    const std::string line = file.ReadLine(kLongestMacroLine);
    if (line.find('=') == std::string::npos) continue;
    const std::string text = machine.code_page->ToUtf8(line);
    for (std::size_t i = 0; i < vars.size(); ++i) TakeMacroLine(found[i], text, vars[i]);
  }
  return found;
}

}  // namespace logbook
