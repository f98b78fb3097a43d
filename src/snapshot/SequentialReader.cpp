// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "snapshot/SequentialReader.h"

#include <algorithm>
#include <array>

#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook {
namespace {

constexpr std::size_t kLongestField = 64 * 1024;
constexpr int kEnd = -1;

bool IsBlank(int byte) {
  return byte == ' ' || byte == '\t';
}
bool EndsField(int byte) {
  return byte == ',' || byte == '\r' || byte == '\n' || byte == kEnd;
}

// What a byte is to the field of a number.
enum class Byte : char { kOther, kBlank, kDelimiter };
constexpr auto kBytes = [] {
  std::array<Byte, 256> table{};
  for (const char blank : {' ', '\t'}) table[static_cast<unsigned char>(blank)] = Byte::kBlank;
  for (const char end : {',', '\r', '\n'})
    table[static_cast<unsigned char>(end)] = Byte::kDelimiter;
  return table;
}();

// The end of a long field, from a byte on that is no half of a character if there is one: those are
// 40 hexadecimal and above in every code page.
std::string EndOf(const std::string& field) {
  const auto begin = std::find_if(field.end() - kLongestField, field.end(),
                                  [](unsigned char byte) { return byte < 0x40; });
  return {begin == field.end() ? field.end() - kLongestField : begin, field.end()};
}

}  // namespace

SequentialReader::SequentialReader(const Machine& machine, std::string_view path)
    : code_page_(*machine.code_page), file_(machine, path) {}

SequentialReader::SequentialReader(const CodePage& code_page, std::string_view bytes)
    : code_page_(code_page), file_(bytes) {}

double SequentialReader::ReadNumber() {
  if (const auto field = TakeNumberAtHand()) return LeadingNumber(*field);
  return LeadingNumber(ReadNumberField());
}

std::optional<double> SequentialReader::FindNumber() {
  try {
    if (const auto field = TakeNumberAtHand()) return FindLeadingNumber(*field);
    return FindLeadingNumber(ReadNumberField());
  } catch (const RunTimeError& error) {
    if (error.Number() != ErrorNumber::kOverflow) throw;
    return std::nullopt;
  }
}

std::string SequentialReader::ReadNumberField() {
  if (AtEnd()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
  SkipBlanks();
  std::string field =
      TakeUpTo([](int byte) { return EndsField(byte) || IsBlank(byte); }, Keep::kBeginning);
  TakeRestOfNumber();
  return field;
}

std::string SequentialReader::ReadText() {
  return ReadText(Keep::kBeginning);
}

std::string SequentialReader::ReadTextEnd() {
  return ReadText(Keep::kEnd);
}

std::string SequentialReader::ReadText(Keep keep) {
  if (AtEnd()) throw RunTimeError(ErrorNumber::kInputPastEndOfFile);
  SkipBlanks();
  std::string field;
  if (file_.Peek() == '"') {
    file_.Get();
    field = TakeUpTo([](int byte) { return byte == '"'; }, keep);
    file_.Get();
    SkipBlanks();
  } else {
    field = TakeUpTo(EndsField, keep);
  }
  TakeDelimiter();
  return code_page_.ToUtf8(field);
}

// Nearly every field: short, and more is at hand behind it.
std::optional<std::string_view> SequentialReader::TakeNumberAtHand() {
  const std::string_view bytes = file_.Buffered();
  const char* const end = bytes.data() + bytes.size();
  const char* at = bytes.data();
  while (at != end && kBytes[static_cast<unsigned char>(*at)] == Byte::kBlank) ++at;
  const char* const begin = at;
  while (at != end && kBytes[static_cast<unsigned char>(*at)] == Byte::kOther) ++at;
  const auto length = static_cast<std::size_t>(at - begin);
  while (at != end && kBytes[static_cast<unsigned char>(*at)] == Byte::kBlank) ++at;
  // Two bytes, as a line end may be two.
  if (end - at < 2 || length > kLongestField) return std::nullopt;
  if (EndsField(static_cast<unsigned char>(*at))) at += *at == '\r' && at[1] == '\n' ? 2 : 1;
  file_.Skip(static_cast<std::size_t>(at - bytes.data()));
  return std::string_view(begin, length);
}

void SequentialReader::SkipBlanks() {
  while (IsBlank(file_.Peek())) file_.Get();
}

// The delimiter in front, if there is one.
void SequentialReader::TakeDelimiter() {
  if (!EndsField(file_.Peek())) return;
  if (file_.Get() == '\r' && file_.Peek() == '\n') file_.Get();
}

// The number is complete: what fails here fails again for the next field.
void SequentialReader::TakeRestOfNumber() {
  try {
    SkipBlanks();
    TakeDelimiter();
  } catch (const RunTimeError&) {
    return;
  }
}

template <typename Ends>
std::string SequentialReader::TakeUpTo(const Ends& ends, Keep keep) {
  std::string field;
  while (true) {
    const std::string_view bytes = file_.Buffered();
    const auto end =
        std::find_if(bytes.begin(), bytes.end(), [&](unsigned char byte) { return ends(byte); });
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    if (keep == Keep::kEnd) {
      field.append(bytes.substr(0, length));
      // One byte more stays, so that it is seen at the end that the field was longer.
      if (field.size() > 2 * kLongestField) field.erase(0, field.size() - kLongestField - 1);
    } else {
      field.append(bytes.substr(0, std::min(length, kLongestField - field.size())));
    }
    file_.Skip(length);
    if (length < bytes.size() || bytes.empty()) break;
  }
  return keep == Keep::kEnd && field.size() > kLongestField ? EndOf(field) : field;
}

}  // namespace logbook
