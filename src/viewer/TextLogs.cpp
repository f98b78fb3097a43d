// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "viewer/TextLogs.h"

#include <algorithm>

#include "base/Files.h"

namespace logbook {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

}  // namespace

std::string ReadLineUpTo(InputFile& file, std::size_t most) {
  std::string line;
  while (true) {
    const std::string_view bytes = file.Buffered();
    const auto end = std::find_if(bytes.begin(), bytes.end(),
                                  [](char byte) { return byte == '\r' || byte == '\n'; });
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    const std::size_t room = most + 1 - line.size();
    line.append(bytes.substr(0, std::min(length, room)));
    file.Skip(std::min(length, room));
    if (bytes.empty() || length >= room) return line;
    if (length == bytes.size()) continue;
    if (file.Get() == '\r' && file.Peek() == '\n') file.Get();
    return line;
  }
}

LimitedText ReadLimitedText(const Machine& machine, std::string_view path) {
  LimitedText result;
  if (!Exists(machine, path)) return result;
  InputFile file(machine, path);
  std::size_t length = 0;
  while (!file.AtEnd() && !result.OverLimit) {
    const std::string line = machine.code_page->ToUtf8(ReadLineUpTo(file, kLongestOfInterest));
    length += machine.code_page->Length(line) + kLineEnd.size();
    if (length < kTextLimit) {
      result.Text.append(line).append(kLineEnd);
    } else {
      result.OverLimit = true;
    }
  }
  return result;
}

TextLines::TextLines(const Machine& machine, std::string_view path)
    : code_page_(machine.code_page) {
  if (Exists(machine, path)) file_.emplace(machine, path);
}

bool TextLines::AtEnd() {
  return !file_ || file_->AtEnd();
}

std::string TextLines::Take(std::size_t bytes) {
  std::string text;
  for (std::size_t taken = 0; taken < bytes && !AtEnd();) {
    const std::string line = file_->ReadLine();
    taken += line.size() + kLineEnd.size();
    text.append(code_page_->ToUtf8(line)).append(kLineEnd);
  }
  if (AtEnd()) file_.reset();
  return text;
}

std::string ReadWholeText(const Machine& machine, std::string_view path) {
  return TextLines(machine, path).Take(std::string::npos);
}

}  // namespace logbook
