// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Comments and names of any bytes on their way out: a terminal obeys nothing of them, a spreadsheet
// takes none for a formula, fields of a line come back, markup opens no tag, and all of it is
// UTF-8.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "Fuzzing.h"
#include "base/Utf8.h"
#include "insight/Csv.h"
#include "insight/Markup.h"
#include "insight/VisibleText.h"

namespace logbook::fuzz {
namespace {

using namespace insight;

// By the library that writes the results as JSON, which raises for all else.
bool IsUtf8(const std::string& text) {
  try {
    return !nlohmann::json(text).dump().empty();
  } catch (const nlohmann::json::exception&) {
    return false;
  }
}

bool IsControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

template <typename Condition>
bool HasCharacter(std::string_view text, Condition condition) {
  for (std::size_t at = 0; at < text.size();) {
    if (condition(NextCharacter(text, at))) return true;
  }
  return false;
}

void TryTerminal(const std::string& text) {
  const std::string name = VisibleName(text);
  const std::string visible = VisibleText(text);
  FUZZ_REQUIRE(IsUtf8(name) && IsUtf8(visible));
  FUZZ_REQUIRE(!HasCharacter(name, IsControl));
  FUZZ_REQUIRE(!HasCharacter(
      visible, [](char32_t each) { return IsControl(each) && each != '\n' && each != '\t'; }));
  FUZZ_REQUIRE(VisibleName(name) == name && VisibleText(visible) == visible);
  FUZZ_REQUIRE(VisibleName(visible) == name);
}

void TryMarkup(const std::string& text) {
  const std::string markup = EscapeMarkup(text);
  FUZZ_REQUIRE(markup.find_first_of("<>\"'") == std::string::npos);
  FUZZ_REQUIRE(IsUtf8(markup) && CleanText(markup) == markup);
}

// The fields of one line, as RFC 4180 has them.
std::vector<std::string> FieldsOf(std::string_view line) {
  FUZZ_REQUIRE(line.ends_with("\r\n"));
  line.remove_suffix(2);
  std::vector<std::string> fields(1);
  bool in_quotes = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool is_double = in_quotes && line.substr(i).starts_with("\"\"");
    if (line[i] == '"' && !is_double) {
      in_quotes = !in_quotes;
    } else if (line[i] == ',' && !in_quotes) {
      fields.emplace_back();
    } else {
      FUZZ_REQUIRE(in_quotes || (line[i] != '\r' && line[i] != '\n'));
      fields.back() += line[i];
      i += is_double ? 1 : 0;
    }
  }
  FUZZ_REQUIRE(!in_quotes);
  return fields;
}

void TryLine(const std::vector<std::string>& texts) {
  CsvLine written;
  CsvLine safe;
  for (const std::string& text : texts) {
    written.Add(text);
    safe.AddText(text);
  }
  const std::vector<std::string> fields = FieldsOf(written.Take());
  FUZZ_REQUIRE(fields.size() == texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i)
    FUZZ_REQUIRE(IsUtf8(texts[i]) ? fields[i] == texts[i] : IsUtf8(fields[i]));
  for (const std::string& field : FieldsOf(safe.Take())) {
    const std::size_t first = field.find_first_not_of(' ');
    FUZZ_REQUIRE(first == std::string::npos ||
                 std::string_view("=+-@\t\r\n").find(field[first]) == std::string_view::npos);
  }
}

void Try(Input input) {
  std::vector<std::string> texts;
  do {
    texts.push_back(input.Text());
  } while (!input.Rest().empty());
  for (const std::string& text : texts) {
    TryTerminal(text);
    TryMarkup(text);
  }
  TryLine(texts);
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
