// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The pieces of a query text, one after the other: words, texts in quotes, signs. Pure; the text
// must outlive the object.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace logbook::insight {

class QueryScanner {
 public:
  explicit QueryScanner(std::string_view text);

  // The byte where the next piece begins; the text's length at its end.
  std::size_t Place() const { return at_; }
  bool AtEnd() const { return at_ == text_.size(); }
  // The number of the character, from 1, that holds this byte.
  std::size_t CharacterAt(std::size_t place) const;

  // True if the next character is this one; Take also passes it and the blanks behind it.
  bool At(char sign) const { return !AtEnd() && text_[at_] == sign; }
  bool Take(char sign);

  // True if the next piece is just this word in these letters; TakeWord also passes it.
  bool AtWord(std::string_view word) const;
  bool TakeWord(std::string_view word);

  // The bytes up to the first of these signs, a blank, a quote, a bracket or the end; the blanks
  // behind are passed only with `pass_blanks`.
  enum class Behind { kPassBlanks, kStay };
  std::string TakeRun(std::string_view ends, Behind behind = Behind::kStay);
  // The run that TakeRun would give.
  std::string_view Run(std::string_view ends) const;

  // The text between the quote in front and the next one, which are passed; a doubled quote stands
  // for one. Raises QueryError if there is none.
  std::string TakeQuoted();

  void PassBlanks();

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace logbook::insight
