// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The host's running logs and other texts of a log folder, as the viewer shows them: line by line,
// each line ended by CR LF, whatever ended it in the file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/Files.h"
#include "base/Machine.h"

namespace logbook {

// Texts and lines of as many bytes of the code page are too long to be shown, or printed.
inline constexpr std::size_t kTextLimit = 64 * 1024;

// A line of more bytes than this in the file is too long whatever it holds: two bytes of the file
// stand for one of the text at least, as a pair that is no character becomes a question mark.
inline constexpr std::size_t kLongestOfInterest = 2 * kTextLimit;

// The next line without its line end, as InputFile::ReadLine gives it; of one that is longer than
// `most` bytes its first most + 1 bytes, and the rest is not read. Empty at the end of the file.
std::string ReadLineUpTo(InputFile& file, std::size_t most);

struct LimitedText {
  std::string Text;        // UTF-8; at most 65535 bytes of the machine's code page
  bool OverLimit = false;  // the file holds more lines than the text
};

// The lines of a file from the first to the last one with which the text, line ends counted, stays
// below 65536 bytes of the code page. Reads no further than the first line that does not fit, and
// of that no more than shows it, so time and memory do not depend on the size of the file. A
// missing file gives an empty text. Raises what InputFile raises.
LimitedText ReadLimitedText(const Machine& machine, std::string_view path);

// The lines of a file of any length, read and converted as they are asked for.
class TextLines {
 public:
  TextLines() = default;  // none
  // Opens the file; a missing one has no lines. Raises what InputFile raises.
  TextLines(const Machine& machine, std::string_view path);

  // Raise what InputFile raises.
  bool AtEnd();
  // The next lines: as many as have this many bytes in the file together, or all that are left.
  std::string Take(std::size_t bytes);

 private:
  const CodePage* code_page_ = nullptr;
  std::optional<InputFile> file_;
};

// All lines of a file. A missing file gives an empty text. Raises what InputFile raises.
std::string ReadWholeText(const Machine& machine, std::string_view path);

}  // namespace logbook
