// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The command line of this program in UTF-8: as one text without the program's name, and in words.
#pragma once

#include <string>
#include <vector>

namespace logbook {

// Where the system hands over words, they are joined by single blanks. Where it hands over a line,
// that is taken as it is, from the first character behind the program's name that is no blank or
// tab.
std::string CommandLineOf(int argc, const char* const* argv);

// The words of the command line, the program's name first, in the form that main is given them.
// Where the system hands over a line, its words are taken from that, and not from main's, which are
// in a code page that need not know their letters.
class CommandWords {
 public:
  CommandWords(int argc, const char* const* argv);

  int Count() const { return static_cast<int>(words_.size()); }
  // So many pointers, and a null behind them; they live as long as this object.
  const char* const* Words() const { return pointers_.data(); }

 private:
  std::vector<std::string> words_;
  std::vector<const char*> pointers_;
};

}  // namespace logbook
