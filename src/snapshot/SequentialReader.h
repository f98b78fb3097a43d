// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The sequential fields of the snapshot files aall.txt, auser.txt, bin.txt, bout.txt and sys.txt
// (docs/file-formats.md). A field ends at a comma or a line end (CR LF, CR or LF), a number also
// at a blank. Blanks (space, tab) before a field are skipped; blanks behind a number belong to the
// comma or line end that follows them. A comma or line end right before the end of the file makes
// no further field.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Files.h"
#include "base/Machine.h"

namespace logbook {

class SequentialReader {
 public:
  // Opens the file. Raises what InputFile raises.
  SequentialReader(const Machine& machine, std::string_view path);

  // The same over the bytes of such a file, which must outlive the object. Raises nothing.
  SequentialReader(const CodePage& code_page, std::string_view bytes);

  // True if no byte is left.
  bool AtEnd() { return file_.AtEnd(); }

  // The next field as a number, by the leading-number rule; 0 for an empty one. Of a field longer
  // than 64 KB only the beginning counts. Raises kInputPastEndOfFile at the end of the file, and
  // kOverflow for a number too large for a double; that field has then been taken. A disk that
  // refuses to read on raises kDeviceInputOutput, but not before a field that has been read whole
  // is given.
  double ReadNumber();

  // The same; nothing if the field does not begin with a number, or with one too large for a
  // double.
  std::optional<double> FindNumber();

  // The next field as text (UTF-8); "" for an empty one. A field that begins with a double quote
  // ends at the next one, or at the end of the file, and may hold anything; blanks and one comma
  // or line end behind it belong to it. Of a field longer than 64 KB only the beginning counts.
  // Raises kInputPastEndOfFile at the end of the file.
  std::string ReadText();

  // The same; of a field longer than 64 KB its end counts.
  std::string ReadTextEnd();

 private:
  enum class Keep { kBeginning, kEnd };
  std::string ReadText(Keep keep);
  // The bytes of the next field as ReadNumber takes it, without the blanks around them. Raises
  // kInputPastEndOfFile at the end of the file.
  std::string ReadNumberField();
  // The next number's field if it is at hand to beyond its delimiter; nothing is taken else. Stays
  // as it is until the file is read on.
  std::optional<std::string_view> TakeNumberAtHand();
  void SkipBlanks();
  void TakeDelimiter();
  void TakeRestOfNumber();
  // Takes the bytes up to the first for which `ends` holds, or to the end of the file.
  template <typename Ends>
  std::string TakeUpTo(const Ends& ends, Keep keep);

  const CodePage& code_page_;
  InputFile file_;
};

}  // namespace logbook
