// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The lines of macro files for all rows of the tune catalogue in one pass over each line: the same
// lines that snapshot/MacroFile.h finds row by row, which looks for every variable in every line.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/CodePage.h"
#include "catalogue/ItemRecord.h"

namespace logbook::insight {

// As MacroLines, pointing into the file or into `Converted` of what found them.
struct MacroViews {
  std::string_view Value;
  std::string_view ColOpgs;
  std::string_view Clmd;
};

// Remembers lines from file to file, so it is for one thread.
class MacroLookup {
 public:
  // For the rows of this catalogue, which need not outlive the object.
  explicit MacroLookup(const Catalogues& catalogues);

  // The lines of one macro file, found for each tune row of that file.
  struct Lines {
    std::vector<std::pair<int, MacroViews>> Rows;  // row numbers, ascending
    std::vector<std::string> Converted;            // lines that had to be converted to UTF-8
  };
  // `file` is the name as the catalogue has it, `bytes` must outlive the result. Raises nothing.
  Lines Find(const CodePage& code_page, std::string_view file, std::string_view bytes);

 private:
  // A bit for each word; the two switches are the highest ones.
  static constexpr std::size_t kMostWords = 64;
  static constexpr std::size_t kColOpgs = kMostWords - 2;
  static constexpr std::size_t kClmd = kMostWords - 1;
  using Words = std::uint64_t;

  // Finds all of some words in a text at once: a state for each beginning of a word, and from each
  // state the next one for each letter.
  struct Automaton {
    static constexpr std::size_t kLetters = 64;          // at most; 0 is each character of no word
    static constexpr std::uint16_t kFindsWord = 0x8000;  // bit of a state in which words end
    std::array<std::uint8_t, 256> letters{};             // of each byte, cases alike
    std::size_t letter_count = 1;
    std::vector<std::uint16_t> next;  // by state * kLetters + letter
    std::vector<Words> found;         // by state
    std::vector<int> rows;            // of each word but the two last, which are the switches
    // The beginnings of the lines of the file before, up to the equal sign, and what is in them.
    struct Known {
      std::string beginning;
      Words found = 0;
    };
    std::vector<Known> known;
    void Add(std::string_view word, std::size_t number);
    void Connect();
    Words FindIn(std::string_view text) const;
    // The same for the line that stands in this place; no word has an equal sign.
    Words FindInLine(std::string_view line, std::size_t place);

   private:
    std::uint8_t LetterOf(char byte);
    std::size_t AddState();
  };

  std::map<std::string, Automaton, std::less<>> files_;
};

}  // namespace logbook::insight
