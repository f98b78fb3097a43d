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

// What is remembered of a file: lines, and bytes of one.
constexpr std::size_t kMostKnown = 1000;
constexpr std::size_t kLongestKnown = 100;

// Where a character stands next, from a place on; the end of the text if it does not. Asked with
// ascending places, it looks at each byte once.
class NextPlace {
 public:
  NextPlace(std::string_view text, char wanted) : text_(text), wanted_(wanted) {}

  std::size_t From(std::size_t at) {
    if (place_ < at || !known_) {
      place_ = std::min(text_.find(wanted_, at), text_.size());
      known_ = true;
    }
    return place_;
  }

 private:
  std::string_view text_;
  char wanted_;
  std::size_t place_ = 0;
  bool known_ = false;
};

// The lines that hold "=". Those of a text that is ASCII need no conversion.
std::vector<std::string_view> Assignments(const CodePage& code_page, std::string_view bytes,
                                          std::vector<std::string>& converted) {
  std::vector<std::string_view> lines;
  if (!IsAscii(bytes)) {
    converted = AssignmentsIn(code_page, bytes);
    lines.assign(converted.begin(), converted.end());
    return lines;
  }
  NextPlace carriage_return(bytes, '\r');
  NextPlace line_feed(bytes, '\n');
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = std::min(carriage_return.From(at), line_feed.From(at));
    const std::string_view line = bytes.substr(at, std::min(end - at, kLongestMacroLine));
    if (line.find('=') != std::string_view::npos) lines.push_back(line);
    at = end + 1;
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

// No word has an equal sign, or a character beyond ASCII.
std::uint8_t MacroLookup::Automaton::LetterOf(char byte) {
  if (byte == '=') throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
  const bool lower = byte >= 'a' && byte <= 'z';
  const auto upper = static_cast<unsigned char>(lower ? byte - 0x20 : byte);
  if (upper >= 0x80) throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
  if (letters[upper] != 0) return letters[upper];
  if (letter_count == kLetters) throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
  letters[upper] = static_cast<std::uint8_t>(letter_count++);
  if (upper >= 'A' && upper <= 'Z') letters[upper + 0x20U] = letters[upper];
  return letters[upper];
}

std::size_t MacroLookup::Automaton::AddState() {
  if (found.size() == kFindsWord) throw RunTimeError(ErrorNumber::kSubscriptOutOfRange);
  found.push_back(0);
  next.resize(found.size() * kLetters);
  return found.size() - 1;
}

void MacroLookup::Automaton::Add(std::string_view word, std::size_t number) {
  if (found.empty()) AddState();
  std::size_t state = 0;
  for (const char byte : word) {
    const std::size_t place = state * kLetters + LetterOf(byte);
    state = next[place];
    if (state != 0) continue;
    state = AddState();
    next[place] = static_cast<std::uint16_t>(state);
  }
  found[state] |= Words{1} << number;
}

// Where no word goes on with a letter, the longest end of what was read that begins a word does.
void MacroLookup::Automaton::Connect() {
  std::vector<std::uint16_t> shorter(found.size());
  std::queue<std::uint16_t> waiting;
  for (std::size_t letter = 0; letter < kLetters; ++letter) {
    if (next[letter] != 0) waiting.push(next[letter]);
  }
  while (!waiting.empty()) {
    const std::size_t state = waiting.front();
    waiting.pop();
    const std::size_t fallback = shorter[state];
    found[state] |= found[fallback];
    for (std::size_t letter = 0; letter < kLetters; ++letter) {
      std::uint16_t& on = next[state * kLetters + letter];
      const std::uint16_t instead = next[fallback * kLetters + letter];
      if (on == 0) {
        on = instead;
      } else {
        shorter[on] = instead;
        waiting.push(on);
      }
    }
  }
  for (std::uint16_t& each : next) {
    if (found[each] != 0) each = static_cast<std::uint16_t>(each | kFindsWord);
  }
}

MacroLookup::Words MacroLookup::Automaton::FindIn(std::string_view text) const {
  Words words = 0;
  std::size_t state = 0;
  for (const char byte : text) {
    const std::uint16_t on = next[state * kLetters + letters[static_cast<unsigned char>(byte)]];
    state = on & ~kFindsWord;
    if (on != state) words |= found[state];
  }
  return words;
}

// Files of one instrument have the same lines, but for what stands behind the equal sign.
MacroLookup::Words MacroLookup::Automaton::FindInLine(std::string_view line, std::size_t place) {
  const std::size_t sign = std::min(line.find('='), line.size());
  const std::string_view beginning = line.substr(0, sign);
  if (place >= kMostKnown || sign > kLongestKnown) return FindIn(line);
  if (place >= known.size()) known.resize(place + 1);
  Known& before = known[place];
  if (before.beginning != beginning) before = {std::string(beginning), FindIn(beginning)};
  return before.found | FindIn(line.substr(sign));
}

MacroLookup::Lines MacroLookup::Find(const CodePage& code_page, std::string_view file,
                                     std::string_view bytes) {
  Lines lines;
  const auto entry = files_.find(file);
  if (entry == files_.end()) return lines;
  Automaton& automaton = entry->second;
  std::size_t place = 0;
  std::vector<MacroViews> views(automaton.rows.size());
  const Words own = (Words{1} << views.size()) - 1;
  // A later line replaces an earlier one. A row's own line does not count for the switches.
  for (const std::string_view line : Assignments(code_page, bytes, lines.Converted)) {
    const Words found = automaton.FindInLine(line, place++);
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
