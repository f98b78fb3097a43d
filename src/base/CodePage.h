// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The machine's ANSI code page. Text is UTF-8 inside the program; every file of a log and every
// profile is in this code page. Conversion happens here and nowhere else, and never depends on
// the locale. Known pages: 874, 932, 936, 949, 950 and 1250 to 1258.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace logbook {

class CodePage {
 public:
  virtual ~CodePage() = default;

  // The numbers of all known pages, ascending.
  static std::span<const int> Numbers();

  // The page with this number, or nullptr if it is not one of the known pages. The object lives
  // as long as the process and never changes.
  static const CodePage* Find(int number);

  // The number, such as 1252.
  virtual int Number() const = 0;

  // The text in this code page. A character that the page lacks becomes the platform's similar
  // one where there is one (U+FF08 is "(" in 1252), else "?" for each UTF-16 unit of it. Bytes
  // that are no UTF-8 become "?" each. Raises nothing.
  virtual std::string FromUtf8(std::string_view text) const = 0;

  // The bytes as UTF-8. A byte or pair that stands for no character becomes U+FFFD in the
  // double-byte pages; in the single-byte ones it becomes the control character of the same number
  // or a character for private use, so that single-byte text comes back unchanged through
  // FromUtf8. Of two codes for one character FromUtf8 writes one. Raises nothing.
  virtual std::string ToUtf8(std::string_view bytes) const = 0;

  // Number of bytes that FromUtf8 gives for the text.
  virtual std::size_t Length(std::string_view text) const = 0;

  // True if the byte begins a double-byte character. Always false in single-byte pages.
  virtual bool IsLeadByte(unsigned char byte) const = 0;
};

}  // namespace logbook
