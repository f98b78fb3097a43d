// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/ProfileText.h"

#include <algorithm>

#include "base/UpperCase.h"
#include "base/Utf8.h"

namespace logbook {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// 1A is the mark that old editors set at the end of a file.
constexpr std::string_view kBlanks = " \t\v\f\r\n\x1A";

bool IsBlank(char byte) {
  // All of them lie below this, and most other characters above it.
  return byte <= ' ' && kBlanks.find(byte) != std::string_view::npos;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                      value.front() == value.back();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool IsSameName(const CodePage& page, std::string_view a, std::string_view b) {
  if (a == b) return true;
  if (IsAscii(a) && IsAscii(b)) return a.size() == b.size() && EqualIgnoringCase(a, b);
  return EqualIgnoringCase(page.ToUtf8(a), page.ToUtf8(b));
}

// False for most names of ASCII characters alone that are not the same, at a glance: those that are
// have the same length and end in the same letter. That differs where names are numbered.
bool MayBeSame(std::string_view a, std::string_view b) {
  return a.size() == b.size() && (a.empty() || (a.back() | 0x20) == (b.back() | 0x20));
}

// The last "]" that is a character of its own and not the second byte of one.
std::size_t FindClosingBracket(const CodePage& page, std::string_view line) {
  std::size_t found = std::string_view::npos;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == ']') found = i;
    if (page.IsLeadByte(static_cast<unsigned char>(line[i]))) ++i;
  }
  return found;
}

// Walks through the lines of a file. All views point into the file's bytes.
class LineReader {
 public:
  LineReader(const CodePage& page, std::string_view file) : page_(page), file_(file) {
    if (file_.starts_with("\xEF\xBB\xBF")) next_ = 3;
  }

  bool Next() {
    if (next_ >= file_.size()) return false;
    const std::size_t start = next_;
    std::size_t end = start;
    while (end < file_.size() && file_[end] != '\r' && file_[end] != '\n') ++end;
    next_ = std::min(end + (file_.substr(end, 2) == kLineEnd ? 2 : 1), file_.size());
    text_ = Trim(file_.substr(start, end - start));
    return true;
  }

  bool IsBlank() const { return text_.empty(); }

  // Position behind the line's end.
  std::size_t End() const { return next_; }

  // The name if the line opens a section.
  std::optional<std::string_view> Section() const {
    if (text_.empty() || text_.front() != '[') return std::nullopt;
    const std::size_t bracket = FindClosingBracket(page_, text_);
    if (bracket == std::string_view::npos) return std::nullopt;
    return Trim(text_.substr(1, bracket - 1));
  }

  struct Assignment {
    std::string_view key;
    std::string_view value;  // with its quotes
  };

  // What the line assigns, if it does.
  std::optional<Assignment> Assigned() const {
    if (text_.empty() || text_.front() == ';') return std::nullopt;
    const std::size_t equals = text_.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    return Assignment{Trim(text_.substr(0, equals)), Trim(text_.substr(equals + 1))};
  }

  // The value with its quotes if the line gives one to this key.
  std::optional<std::string_view> ValueOf(std::string_view key) const {
    const auto assigned = Assigned();
    if (!assigned || !IsSameName(page_, assigned->key, key)) return std::nullopt;
    return assigned->value;
  }

 private:
  const CodePage& page_;
  std::string_view file_;
  std::string_view text_;
  std::size_t next_ = 0;
};

struct Place {
  bool section_found = false;
  // Behind the last line of the section that is not blank.
  std::size_t section_end = 0;
  std::optional<std::string_view> value;
};

Place FindPlace(const CodePage& page, std::string_view file, std::string_view section,
                std::string_view key) {
  section = Trim(section);
  key = Trim(key);
  Place place;
  LineReader line(page, file);
  while (line.Next()) {
    const auto opened = line.Section();
    if (opened && place.section_found) return place;
    if (opened) place.section_found = IsSameName(page, *opened, section);
    if (!place.section_found) continue;
    if (!line.IsBlank()) place.section_end = line.End();
    if (!opened) place.value = line.ValueOf(key);
    if (place.value) return place;
  }
  return place;
}

bool EndsInsideLine(std::string_view text) {
  return !text.empty() && text.back() != '\r' && text.back() != '\n';
}

}  // namespace

std::optional<std::string> FindProfileValue(const CodePage& page, std::string_view file,
                                            std::string_view section, std::string_view key) {
  const Place place = FindPlace(page, file, section, key);
  if (!place.value) return std::nullopt;
  return std::string(WithoutQuotes(*place.value));
}

std::vector<std::optional<std::string_view>> FindProfileValues(
    const CodePage& page, std::string_view file, std::string_view section,
    std::span<const std::string_view> keys) {
  std::vector<std::optional<std::string_view>> values(keys.size());
  const bool ascii_keys = std::all_of(keys.begin(), keys.end(), IsAscii);
  std::vector<std::string_view> names(keys.begin(), keys.end());
  for (std::string_view& name : names) name = Trim(name);
  section = Trim(section);
  bool section_found = false;
  LineReader line(page, file);
  while (line.Next()) {
    const auto opened = line.Section();
    if (opened && section_found) break;
    if (opened) section_found = IsSameName(page, *opened, section);
    if (!section_found || opened) continue;
    const auto assigned = line.Assigned();
    if (!assigned) continue;
    const bool by_length = ascii_keys && IsAscii(assigned->key);
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (by_length && !MayBeSame(names[i], assigned->key)) continue;
      if (!values[i] && IsSameName(page, assigned->key, names[i])) {
        values[i] = WithoutQuotes(assigned->value);
      }
    }
  }
  return values;
}

std::string SetProfileValue(const CodePage& page, std::string_view file, std::string_view section,
                            std::string_view key, std::string_view value) {
  const Place place = FindPlace(page, file, section, key);
  std::size_t position = place.section_found ? place.section_end : file.size();
  std::size_t replaced = 0;
  std::string text;
  if (place.value) {
    position = static_cast<std::size_t>(place.value->data() - file.data());
    replaced = place.value->size();
    text = value;
  } else {
    if (EndsInsideLine(file.substr(0, position))) text += kLineEnd;
    if (!place.section_found) text.append("[").append(section).append("]").append(kLineEnd);
    text.append(key).append("=").append(value).append(kLineEnd);
  }
  std::string result(file);
  return result.replace(position, replaced, text);
}

}  // namespace logbook
