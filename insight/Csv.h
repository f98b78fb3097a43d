// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Lines of comma-separated values as RFC 4180 has them: CR LF at the end, quotes around a field
// that holds a comma, a quote or a line end. Pure; none raises anything.
#pragma once

#include <string>
#include <string_view>

namespace logbook::insight {

// A text that people wrote, made harmless for programs that take a field for a formula: an
// apostrophe goes in front of one that begins, blanks aside, with "=", "+", "-", "@", or with a tab
// or line end. All other texts come back as they are.
std::string Neutralised(std::string_view text);

// The number in the shortest form that reads back as the same number; with a point, never grouped.
std::string ExactNumber(double value);

// One line, field by field.
class CsvLine {
 public:
  // Bytes that are no UTF-8 become U+FFFD, as in JSON.
  CsvLine& Add(std::string_view field);
  // A field for text from outside: made harmless first.
  CsvLine& AddText(std::string_view text) { return Add(Neutralised(text)); }
  CsvLine& AddNumber(double value) { return Add(ExactNumber(value)); }

  // The line with its end; the next one begins.
  std::string Take();

 private:
  std::string line_;
  bool empty_ = true;
};

}  // namespace logbook::insight
