// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/TextLogs.h"

#include <cstddef>

#include "base/Files.h"

namespace logbook {
namespace {

constexpr std::size_t kTextLimit = 64 * 1024;
constexpr std::string_view kLineEnd = "\r\n";

// The next line without its line end, as InputFile::ReadLine gives it, or the beginning of a line
// that is longer than `most` bytes.
std::string ReadLineUpTo(InputFile& file, std::size_t most) {
  std::string line;
  while (line.size() <= most) {
    const int byte = file.Get();
    if (byte < 0 || byte == '\n') break;
    if (byte == '\r') {
      if (file.Peek() == '\n') file.Get();
      break;
    }
    line += static_cast<char>(byte);
  }
  return line;
}

}  // namespace

LimitedText ReadLimitedText(const Machine& machine, std::string_view path) {
  LimitedText result;
  if (!Exists(machine, path)) return result;
  InputFile file(machine, path);
  std::size_t length = 0;
  while (!file.AtEnd() && !result.OverLimit) {
    // Two bytes of the file stand for one byte of the text at most: a pair that is no character
    // becomes a question mark.
    const std::string line = machine.code_page->ToUtf8(ReadLineUpTo(file, 2 * kTextLimit));
    length += machine.code_page->Length(line) + kLineEnd.size();
    if (length < kTextLimit) {
      result.Text.append(line).append(kLineEnd);
    } else {
      result.OverLimit = true;
    }
  }
  return result;
}

std::string ReadWholeText(const Machine& machine, std::string_view path) {
  std::string text;
  if (!Exists(machine, path)) return text;
  InputFile file(machine, path);
  while (!file.AtEnd()) text.append(machine.code_page->ToUtf8(file.ReadLine())).append(kLineEnd);
  return text;
}

}  // namespace logbook
