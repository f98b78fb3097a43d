// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/RegistryText.h"

#include <algorithm>
#include <charconv>

#include "base/PlainText.h"
#include "base/UpperCase.h"
#include "base/Utf8.h"

namespace logbook {

namespace {

constexpr std::string_view kRoot = "HKEY_LOCAL_MACHINE\\";

// UTF-16, low byte first, as UTF-8. Half a surrogate pair becomes U+FFFD; an odd byte at the end
// is dropped.
std::string FromUtf16(std::string_view bytes) {
  const auto unit_at = [bytes](std::size_t i) -> char32_t {
    return static_cast<unsigned char>(bytes[i]) |
           static_cast<char32_t>(static_cast<unsigned char>(bytes[i + 1])) << 8;
  };
  std::string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    char32_t character = unit_at(i);
    const bool is_high = character >= 0xD800 && character < 0xDC00;
    const bool is_half = character >= 0xD800 && character < 0xE000;
    const char32_t low = is_high && i + 3 < bytes.size() ? unit_at(i + 2) : 0;
    if (low >= 0xDC00 && low < 0xE000) {
      character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
      i += 2;
    } else if (is_half) {
      character = 0xFFFD;
    }
    AppendCharacter(character, text);
  }
  return text;
}

std::string DecodeFile(std::string_view file) {
  if (file.starts_with("\xFF\xFE")) return FromUtf16(file.substr(2));
  if (file.starts_with("\xEF\xBB\xBF")) file.remove_prefix(3);
  return std::string(file);
}

// Reads a file from its start to its end. A text in quotes may run over several lines, and so may
// a list of bytes; anything else ends with its line.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : text_(text) {}

  bool AtEnd() const { return position_ == text_.size(); }
  char Peek() const { return AtEnd() ? '\n' : text_[position_]; }

  bool Take(std::string_view word) {
    if (!EqualIgnoringCase(text_.substr(position_, word.size()), word)) return false;
    position_ += word.size();
    return true;
  }

  void SkipBlanks() { position_ = Find(text_.find_first_not_of(" \t", position_)); }
  void SkipLine() {
    position_ = Find(text_.find_first_of("\r\n", position_));
    position_ = Find(text_.find_first_not_of("\r\n", position_));
  }

  std::string_view RestOfLine() const {
    return text_.substr(position_, Find(text_.find_first_of("\r\n", position_)) - position_);
  }

  // A text in quotes, which begins here; nothing if the closing quote is missing.
  std::optional<std::string> TakeQuoted() {
    std::string result;
    for (std::size_t i = position_ + 1; i < text_.size(); ++i) {
      const bool escaped =
          text_[i] == '\\' && i + 1 < text_.size() && (text_[i + 1] == '\\' || text_[i + 1] == '"');
      if (text_[i] == '"') {
        position_ = i + 1;
        return result;
      }
      result.push_back(escaped ? text_[++i] : text_[i]);
    }
    return std::nullopt;
  }

  // A list of bytes with commas; a backslash at the end of a line goes on in the next one.
  std::string TakeBytes() {
    std::string bytes;
    while (true) {
      position_ = Find(text_.find_first_not_of(" \t,", position_));
      if (Peek() == '\\') {
        SkipLine();
        continue;
      }
      const char* const begin = text_.data() + position_;
      unsigned value = 0;
      const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), value, 16);
      if (error != std::errc() || value > 0xFF) return bytes;
      bytes.push_back(static_cast<char>(value));
      position_ += static_cast<std::size_t>(end - begin);
    }
  }

 private:
  std::size_t Find(std::size_t position) const { return std::min(position, text_.size()); }

  std::string_view text_;
  std::size_t position_ = 0;
};

// What stands behind the "=" of a value; nothing if it is no text, or takes the value away.
std::optional<std::string> TakeValue(Cursor& cursor, bool bytes_are_utf16) {
  cursor.SkipBlanks();
  if (cursor.Peek() == '"') {
    auto text = cursor.TakeQuoted();
    return text ? std::optional(std::string(UpToNul(*text))) : std::nullopt;
  }
  const bool is_text = cursor.Take("hex(1):") || cursor.Take("hex(2):");
  if (is_text || cursor.Take("hex")) {
    if (!is_text) cursor.Take(cursor.RestOfLine().substr(0, cursor.RestOfLine().find(':') + 1));
    const std::string bytes = cursor.TakeBytes();
    if (is_text) return std::string(UpToNul(bytes_are_utf16 ? FromUtf16(bytes) : bytes));
  }
  return std::nullopt;
}

// Follows the fate of one value through the lines of a file.
class ValueWatch {
 public:
  ValueWatch(std::string_view key, std::string_view name)
      : key_(std::string(kRoot).append(key)), name_(name) {}

  void TakeLine(Cursor& cursor) {
    cursor.SkipBlanks();
    if (cursor.Peek() == '[') {
      TakeKey(cursor.RestOfLine());
    } else if (cursor.Peek() == '"' || cursor.Peek() == '@') {
      TakeAssignment(cursor);
    } else if (EqualIgnoringCase(cursor.RestOfLine(), "REGEDIT4")) {
      bytes_are_utf16_ = false;
    }
    cursor.SkipLine();
  }

  const std::optional<std::string>& Value() const { return value_; }

 private:
  void TakeKey(std::string_view line) {
    line = line.substr(1, line.rfind(']') - 1);
    const bool removed = line.starts_with("-");
    if (removed) line.remove_prefix(1);
    within_key_ = !removed && EqualIgnoringCase(line, key_);
    const std::string below = std::string(line) + "\\";
    if (removed && EqualIgnoringCase((key_ + "\\").substr(0, below.size()), below)) value_.reset();
  }

  void TakeAssignment(Cursor& cursor) {
    std::optional<std::string> name = std::string();
    if (!cursor.Take("@")) name = cursor.TakeQuoted();
    cursor.SkipBlanks();
    if (!name || !cursor.Take("=")) return;
    std::optional<std::string> value = TakeValue(cursor, bytes_are_utf16_);
    if (within_key_ && EqualIgnoringCase(*name, name_)) value_ = std::move(value);
  }

  std::string key_;
  std::string_view name_;
  bool within_key_ = false;
  bool bytes_are_utf16_ = true;
  std::optional<std::string> value_;
};

}  // namespace

std::optional<std::string> FindRegistryText(std::string_view file, std::string_view key,
                                            std::string_view name) {
  const std::string text = DecodeFile(file);
  ValueWatch watch(key, name);
  for (Cursor cursor(text); !cursor.AtEnd();) watch.TakeLine(cursor);
  return watch.Value();
}

}  // namespace logbook
