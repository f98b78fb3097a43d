// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SequentialReader.h"

#include <algorithm>

#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook {
namespace {

constexpr std::size_t kLongestNumber = 64 * 1024;
constexpr int kEnd = -1;

bool IsBlank(int byte) {
  return byte == ' ' || byte == '\t';
}
bool EndsField(int byte) {
  return byte == ',' || byte == '\r' || byte == '\n' || byte == kEnd;
}

}  // namespace

SequentialReader::SequentialReader(const Machine& machine, std::string_view path)
    : code_page_(*machine.code_page), file_(machine, path) {}

SequentialReader::SequentialReader(const CodePage& code_page, std::string_view bytes)
    : code_page_(code_page), file_(bytes) {}

double SequentialReader::ReadNumber() {
  return LeadingNumber(ReadNumberField());
}

std::string SequentialReader::ReadNumberField() {
  if (AtEnd()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
  SkipBlanks();
  std::string field;
  while (true) {
    const std::string_view bytes = file_.Buffered();
    const auto end = std::find_if(bytes.begin(), bytes.end(), [](unsigned char byte) {
      return EndsField(byte) || IsBlank(byte);
    });
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    field.append(bytes.substr(0, std::min(length, kLongestNumber - field.size())));
    file_.Skip(length);
    if (length < bytes.size() || bytes.empty()) break;
  }
  SkipBlanks();
  TakeDelimiter();
  return field;
}

std::string SequentialReader::ReadText() {
  if (AtEnd()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
  SkipBlanks();
  const std::string field = file_.Peek() == '"' ? TakeQuoted() : TakeUnquoted();
  TakeDelimiter();
  return code_page_.ToUtf8(field);
}

void SequentialReader::SkipBlanks() {
  while (IsBlank(file_.Peek())) file_.Get();
}

// The delimiter in front, if there is one.
void SequentialReader::TakeDelimiter() {
  if (!EndsField(file_.Peek())) return;
  if (file_.Get() == '\r' && file_.Peek() == '\n') file_.Get();
}

std::string SequentialReader::TakeQuoted() {
  file_.Get();
  std::string field;
  for (int byte = file_.Get(); byte != '"' && byte != kEnd; byte = file_.Get()) {
    field += static_cast<char>(byte);
  }
  SkipBlanks();
  return field;
}

std::string SequentialReader::TakeUnquoted() {
  std::string field;
  while (!EndsField(file_.Peek())) field += static_cast<char>(file_.Get());
  return field;
}

}  // namespace logbook
