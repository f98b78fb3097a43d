// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/CodePage.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/CodePageTables.h"
#include "base/Utf8.h"

namespace logbook {

namespace {

unsigned char ByteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

class TablePage final : public CodePage {
 public:
  explicit TablePage(const CodePageTable& table) : table_(table) {}

  int Number() const override { return table_.number; }

  std::string FromUtf8(std::string_view text) const override {
    std::string bytes;
    bytes.reserve(text.size());
    std::size_t position = 0;
    while (position < text.size()) {
      const std::size_t end = EndOfAscii(text, position);
      bytes.append(text, position, end - position);
      position = end;
      if (position < text.size()) AppendCode(NextCharacter(text, position), bytes);
    }
    return bytes;
  }

  std::string ToUtf8(std::string_view bytes) const override {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 2);
    std::size_t position = 0;
    while (position < bytes.size()) {
      const std::size_t end = EndOfAscii(bytes, position);
      text.append(bytes, position, end - position);
      position = end;
      if (position < bytes.size()) AppendCharacter(TakeCharacter(bytes, position), text);
    }
    return text;
  }

  std::size_t Length(std::string_view text) const override {
    std::size_t length = 0;
    std::size_t position = 0;
    while (position < text.size()) {
      const std::size_t end = EndOfAscii(text, position);
      length += end - position;
      position = end;
      if (position < text.size()) length += LengthOfCode(NextCharacter(text, position));
    }
    return length;
  }

  bool IsLeadByte(unsigned char byte) const override {
    return table_.singles[byte] == CodePageTable::kLead;
  }

 private:
  // The bytes of a character, the lead byte in the high half; 0 if the page has none.
  unsigned CodeOf(char32_t character) const {
    if (character >= 0x10000) return 0;
    const std::uint16_t* row = table_.rows[character >> 8];
    return row == nullptr ? 0u : row[character & 0xFF];
  }

  static bool IsTwoUnits(char32_t character) {
    return character >= 0x10000 && character != kNotUtf8;
  }

  std::size_t LengthOfCode(char32_t character) const {
    return CodeOf(character) > 0xFF || IsTwoUnits(character) ? 2 : 1;
  }

  void AppendCode(char32_t character, std::string& bytes) const {
    const unsigned code = CodeOf(character);
    if (code == 0) {
      bytes.append(IsTwoUnits(character) ? "??" : "?");
      return;
    }
    if (code > 0xFF) bytes.push_back(static_cast<char>(code >> 8));
    bytes.push_back(static_cast<char>(code & 0xFF));
  }

  // A lead byte that no trail byte follows stands alone, so that a line end behind it survives.
  char32_t TakeCharacter(std::string_view bytes, std::size_t& position) const {
    const unsigned char first = ByteAt(bytes, position++);
    if (!IsLeadByte(first)) return table_.singles[first];
    if (position == bytes.size() || !table_.trails[ByteAt(bytes, position)]) {
      return CodePageTable::kNone;
    }
    const unsigned char second = ByteAt(bytes, position++);
    return table_.pairs[(first - table_.first_lead) * CodePageTable::kTrailCount +
                        (second - CodePageTable::kFirstTrail)];
  }

  const CodePageTable& table_;
};

}  // namespace

std::span<const int> CodePage::Numbers() {
  static const auto numbers = [] {
    std::array<int, kCodePageCount> all{};
    std::transform(kCodePageTables.begin(), kCodePageTables.end(), all.begin(),
                   [](const CodePageTable& table) { return table.number; });
    return all;
  }();
  return numbers;
}

const CodePage* CodePage::Find(int number) {
  static const std::vector<TablePage> pages(kCodePageTables.begin(), kCodePageTables.end());
  for (const TablePage& page : pages) {
    if (page.Number() == number) return &page;
  }
  return nullptr;
}

}  // namespace logbook
