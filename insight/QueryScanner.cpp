// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/QueryScanner.h"

#include "insight/Query.h"
#include "text/TextParts.h"

namespace logbook::insight {
namespace {

bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

bool EndsRun(char byte) {
  return IsBlank(byte) || byte == '"' || byte == '(' || byte == ')';
}

}  // namespace

QueryScanner::QueryScanner(std::string_view text) : text_(text) {
  PassBlanks();
}

std::size_t QueryScanner::CharacterAt(std::size_t place) const {
  std::size_t character = 1;
  for (std::size_t i = 1; i <= place && i <= text_.size(); ++i) {
    if (i == text_.size() || BeginsCharacter(text_[i])) ++character;
  }
  return character;
}

bool QueryScanner::Take(char sign) {
  if (!At(sign)) return false;
  ++at_;
  PassBlanks();
  return true;
}

bool QueryScanner::AtWord(std::string_view word) const {
  if (!text_.substr(at_).starts_with(word)) return false;
  const std::size_t behind = at_ + word.size();
  return behind == text_.size() || EndsRun(text_[behind]);
}

bool QueryScanner::TakeWord(std::string_view word) {
  if (!AtWord(word)) return false;
  at_ += word.size();
  PassBlanks();
  return true;
}

std::string_view QueryScanner::Run(std::string_view ends) const {
  std::size_t end = at_;
  while (end < text_.size() && !EndsRun(text_[end]) &&
         ends.find(text_[end]) == std::string_view::npos) {
    ++end;
  }
  return text_.substr(at_, end - at_);
}

std::string QueryScanner::TakeRun(std::string_view ends, Behind behind) {
  std::string run(Run(ends));
  at_ += run.size();
  if (behind == Behind::kPassBlanks) PassBlanks();
  return run;
}

std::string QueryScanner::TakeQuoted() {
  const std::size_t begin = at_++;
  std::string quoted;
  while (at_ < text_.size()) {
    const char byte = text_[at_++];
    if (byte != '"') {
      quoted += byte;
    } else if (at_ < text_.size() && text_[at_] == '"') {
      quoted += text_[at_++];
    } else {
      return quoted;
    }
  }
  throw QueryError(begin, "the quote that begins here does not end");
}

void QueryScanner::PassBlanks() {
  while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
}

}  // namespace logbook::insight
