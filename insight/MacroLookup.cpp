// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/MacroLookup.h"

#include <algorithm>
#include <bit>
#include <queue>

#include "base/RunTimeError.h"
#include "base/Utf8.h"
#include "snapshot/MacroFile.h"

namespace logbook::insight {
namespace {

constexpr int kNoLetter = -1;

// The characters that variables are made of, 20 to 5F hexadecimal, in upper case; no variable holds
// any other.
constexpr int LetterOf(char byte) {
  const auto letter = static_cast<unsigned char>(byte >= 'a' && byte <= 'z' ? byte - 0x20 : byte);
  return letter >= 0x20 && letter < 0x60 ? letter - 0x20 : kNoLetter;
}

// The lines that hold "=". Those of a text that is ASCII need no conversion.
std::vector<std::string_view> Assignments(const CodePage& code_page, std::string_view bytes,
                                          std::vector<std::string>& converted) {
  std::vector<std::string_view> lines;
  if (!IsAscii(bytes)) {
    converted = AssignmentsIn(code_page, bytes);
    lines.assign(converted.begin(), converted.end());
    return lines;
  }
  while (!bytes.empty()) {
    const auto end = static_cast<std::size_t>(
        std::find_if(bytes.begin(), bytes.end(),
                     [](char byte) { return byte == '\r' || byte == '\n'; }) -
        bytes.begin());
    const std::string_view line = bytes.substr(0, std::min(end, kLongestMacroLine));
    if (line.find('=') != std::string_view::npos) lines.push_back(line);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return lines;
}

}  // namespace

MacroLookup::MacroLookup(const Catalogues& catalogues) {
  for (int row = 0; row < kTuneRowCount; ++row) {
    const TuneItemRecord& item = RowAt(catalogues.TuneItems, row);
    Automaton& automaton = files_[item.File];
    if (automaton.rows.size() == kColOpgs) {
      throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
    }
    automaton.Add(item.Var, automaton.rows.size());
    automaton.rows.push_back(row);
  }
  for (auto& [file, automaton] : files_) {
    automaton.Add("OPT_COLOPGS", kColOpgs);
    automaton.Add("CLMD", kClmd);
    automaton.Connect();
  }
}

void MacroLookup::Automaton::Add(std::string_view word, std::size_t number) {
  if (states.empty()) states.emplace_back();
  std::size_t state = 0;
  for (const char byte : word) {
    const int letter = LetterOf(byte);
    if (letter == kNoLetter) throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
    const std::uint16_t next = states[state].next[static_cast<std::size_t>(letter)];
    if (next != 0) {
      state = next;
      continue;
    }
    states[state].next[static_cast<std::size_t>(letter)] =
        static_cast<std::uint16_t>(states.size());
    state = states.size();
    states.emplace_back();
  }
  states[state].found |= Words{1} << number;
}

// Where no word goes on with a letter, the longest end of what was read that begins a word does.
void MacroLookup::Automaton::Connect() {
  std::vector<std::uint16_t> shorter(states.size());
  std::queue<std::uint16_t> waiting;
  for (const std::uint16_t next : states[0].next) {
    if (next != 0) waiting.push(next);
  }
  while (!waiting.empty()) {
    const std::uint16_t state = waiting.front();
    waiting.pop();
    const State& fallback = states[shorter[state]];
    states[state].found |= fallback.found;
    for (std::size_t letter = 0; letter < fallback.next.size(); ++letter) {
      std::uint16_t& next = states[state].next[letter];
      if (next == 0) {
        next = fallback.next[letter];
      } else {
        shorter[next] = fallback.next[letter];
        waiting.push(next);
      }
    }
  }
}

MacroLookup::Words MacroLookup::Automaton::FindIn(std::string_view line) const {
  Words found = 0;
  std::size_t state = 0;
  for (const char byte : line) {
    const int letter = LetterOf(byte);
    state = letter == kNoLetter ? 0 : states[state].next[static_cast<std::size_t>(letter)];
    found |= states[state].found;
  }
  return found;
}

MacroLookup::Lines MacroLookup::Find(const CodePage& code_page, std::string_view file,
                                     std::string_view bytes) const {
  Lines lines;
  const auto entry = files_.find(file);
  if (entry == files_.end()) return lines;
  const Automaton& automaton = entry->second;
  std::vector<MacroViews> views(automaton.rows.size());
  const Words own = (Words{1} << views.size()) - 1;
  // A later line replaces an earlier one. A row's own line does not count for the switches.
  for (const std::string_view line : Assignments(code_page, bytes, lines.Converted)) {
    const Words found = automaton.FindIn(line);
    const bool col_opgs = (found >> kColOpgs & 1) != 0;
    const bool clmd = (found >> kClmd & 1) != 0;
    for (Words rest = found & own; rest != 0; rest &= rest - 1) {
      views[static_cast<std::size_t>(std::countr_zero(rest))].Value = line;
    }
    if (!col_opgs && !clmd) continue;
    for (Words rest = ~found & own; rest != 0; rest &= rest - 1) {
      MacroViews& view = views[static_cast<std::size_t>(std::countr_zero(rest))];
      (col_opgs ? view.ColOpgs : view.Clmd) = line;
    }
  }
  for (std::size_t word = 0; word < views.size(); ++word) {
    lines.Rows.emplace_back(automaton.rows[word], views[word]);
  }
  return lines;
}

}  // namespace logbook::insight
