// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The text of a word-wrapping text box with its soft wraps made hard, as comment.txt keeps it.
#pragma once

#include <string>

#include "base/Machine.h"

namespace logbook {

// A multi-line text box that can tell where its lines begin.
class WrappedTextBox {
 public:
  virtual ~WrappedTextBox() = default;
  // The whole text, UTF-8, typed line ends as CR LF.
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // Number of displayed lines, at least 1.
  virtual int LineCount() const = 0;
  // Offset of a displayed line's first character, lines counted from 0, in bytes of the code page
  // with CR LF for typed line ends; -1 if there is no such line.
  virtual long LineIndex(int line) const = 0;
};

// The text with CR LF at every soft wrap; typed line ends are not doubled. A wrap after at most
// two characters of the whole text stays unbroken. Any failure gives what was built so far.
std::string GetWrappedText(const Machine& machine, const WrappedTextBox& box);

}  // namespace logbook
