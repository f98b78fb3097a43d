// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Writes the tables of the code pages as C++ from the data files beside it.
// Usage: make_code_pages OUTPUT BESTFIT.TSV PAGE.TXT...
// Ends with a message and status 1 for a line that it cannot read, for a code with two characters
// and for a character with two codes of which none is marked as read only.

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/Utf8.h"

namespace {

struct Page {
  int number = 0;
  std::set<int> leads;
  std::set<int> trails;
  std::map<unsigned, char32_t> characters;
  std::set<unsigned> read_only;
  std::map<char32_t, unsigned> codes;
};

[[noreturn]] void Fail(const std::string& message) {
  throw std::runtime_error(message);
}

unsigned Hex(const std::string& text) {
  std::size_t used = 0;
  const unsigned long value = text.empty() ? 0 : std::stoul(text, &used, 16);
  if (used == 0 || used != text.size() || value > 0xFFFF) Fail("no code: \"" + text + "\"");
  return static_cast<unsigned>(value);
}

unsigned NextCode(const Page& page, unsigned code) {
  ++code;
  if (code <= 0x100 || page.trails.empty()) return code;
  while (!page.trails.contains(static_cast<int>(code & 0xFF))) ++code;
  return code;
}

void AddBytes(std::istringstream& words, std::set<int>& bytes) {
  for (std::string word; words >> word;) {
    const std::size_t dash = word.find('-');
    if (dash == std::string::npos) Fail("no range of bytes: \"" + word + "\"");
    const unsigned last = Hex(word.substr(dash + 1));
    for (unsigned byte = Hex(word.substr(0, dash)); byte <= last; ++byte) {
      bytes.insert(static_cast<int>(byte));
    }
  }
}

void AddCharacter(Page& page, unsigned code, char32_t character) {
  const int byte = static_cast<int>(code > 0xFF ? code >> 8 : code);
  const bool is_lead = page.leads.contains(byte);
  const bool fits = code > 0xFF ? is_lead && page.trails.contains(static_cast<int>(code & 0xFF))
                                : !is_lead && code >= 0x80;
  if (!fits) Fail("code outside of the page");
  if (character > 0xFFFF) Fail("character outside of the basic plane");
  if (!page.characters.emplace(code, character).second) Fail("code with two characters");
}

// Each row from the first lead byte to the last runs from the first trail byte to the last.
void AddRange(Page& page, std::istringstream& words) {
  std::string first, last, character;
  words >> first >> last >> character;
  const unsigned from = Hex(first), to = Hex(last);
  char32_t next = Hex(character);
  for (unsigned row = from >> 8; row <= to >> 8; ++row) {
    for (unsigned byte = from & 0xFF; byte <= (to & 0xFF); ++byte) {
      if (row != 0 && !page.trails.contains(static_cast<int>(byte))) continue;
      AddCharacter(page, row << 8 | byte, next++);
    }
  }
}

void AddReadOnly(Page& page, std::istringstream& words) {
  std::string first, last;
  words >> first >> last;
  for (unsigned code = Hex(first); code <= Hex(last); code = NextCode(page, code)) {
    page.read_only.insert(code);
  }
}

void AddRun(Page& page, const std::string& line, std::size_t tab) {
  unsigned code = Hex(line.substr(0, tab));
  for (std::size_t position = tab + 1; position < line.size(); code = NextCode(page, code)) {
    AddCharacter(page, code, logbook::NextCharacter(line, position));
  }
}

void AddLine(Page& page, const std::string& line) {
  const std::size_t tab = line.find('\t');
  if (tab != std::string::npos) return AddRun(page, line, tab);
  std::istringstream words(line);
  std::string word;
  words >> word;
  if (word == "page") {
    if (!(words >> page.number)) Fail("no number");
  } else if (word == "leads") {
    AddBytes(words, page.leads);
  } else if (word == "trails") {
    AddBytes(words, page.trails);
  } else if (word == "range") {
    AddRange(page, words);
  } else if (word == "reads") {
    AddReadOnly(page, words);
  } else {
    Fail("unknown word");
  }
}

// Calls `take` for each line that is neither empty nor a comment; a failure names the line.
template <typename Take>
void ForEachLine(const std::string& path, Take take) {
  std::ifstream file(path, std::ios::binary);
  if (!file) Fail("cannot read " + path);
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.empty() || line[0] == '#') continue;
    try {
      take(line);
    } catch (const std::exception& error) {
      Fail(path + ":" + std::to_string(number) + ": " + error.what());
    }
  }
}

Page ReadPage(const std::string& path) {
  Page page;
  ForEachLine(path, [&page](const std::string& line) { AddLine(page, line); });
  for (const auto& [code, character] : page.characters) {
    if (page.read_only.contains(code)) continue;
    if (!page.codes.emplace(character, code).second) Fail(path + ": character with two codes");
  }
  for (char32_t ascii = 1; ascii < 0x80; ++ascii) page.codes[ascii] = ascii;
  return page;
}

// A character that the page has itself is never written as a similar one.
void AddSimilar(std::map<int, Page>& pages, const std::string& path) {
  ForEachLine(path, [&pages](const std::string& line) {
    std::istringstream words(line);
    int number = 0;
    std::string character, bytes;
    if (!(words >> number >> character >> bytes) || !pages.contains(number) ||
        character.rfind("U+", 0) != 0) {
      Fail("no similar character");
    }
    pages.at(number).codes.emplace(Hex(character.substr(2)), Hex(bytes));
  });
}

template <typename Value>
void WriteValues(std::ostream& out, const std::vector<Value>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    out << static_cast<unsigned>(values[i]) << (i % 16 == 15 ? ",\n" : ",");
  }
}

void WriteDecoding(std::ostream& out, const Page& page) {
  constexpr unsigned kNone = 0xFFFD;
  std::vector<unsigned> singles(256, kNone);
  for (unsigned byte = 0; byte < 0x80; ++byte) singles[byte] = byte;
  for (const int lead : page.leads) singles[static_cast<std::size_t>(lead)] = 0xFFFF;
  const int first_lead = page.leads.empty() ? 0 : *page.leads.begin();
  const int last_lead = page.leads.empty() ? -1 : *page.leads.rbegin();
  std::vector<unsigned> pairs(static_cast<std::size_t>(last_lead - first_lead + 1) * 192, kNone);
  for (const auto& [code, character] : page.characters) {
    if (code < 0x100) {
      singles[code] = character;
    } else {
      const unsigned row = (code >> 8) - static_cast<unsigned>(first_lead);
      pairs[row * 192 + (code & 0xFF) - 0x40] = character;
    }
  }
  std::vector<unsigned> trails(256, 0);
  for (const int trail : page.trails) trails[static_cast<std::size_t>(trail)] = 1;
  out << "constexpr char16_t kSingles" << page.number << "[] = {\n";
  WriteValues(out, singles);
  out << "};\nconstexpr bool kTrails" << page.number << "[] = {\n";
  WriteValues(out, trails);
  out << "};\n";
  if (page.leads.empty()) return;
  out << "constexpr char16_t kPairs" << page.number << "[] = {\n";
  WriteValues(out, pairs);
  out << "};\n";
}

void WriteEncoding(std::ostream& out, const Page& page) {
  std::map<unsigned, std::vector<unsigned>> rows;
  for (const auto& [character, code] : page.codes) {
    auto& row = rows.try_emplace(character >> 8, 256u, 0u).first->second;
    row[character & 0xFF] = code;
  }
  for (const auto& [high, row] : rows) {
    out << "constexpr std::uint16_t kRow" << page.number << "_" << high << "[] = {\n";
    WriteValues(out, row);
    out << "};\n";
  }
  out << "constexpr const std::uint16_t* kRows" << page.number << "[] = {\n";
  for (unsigned high = 0; high < 256; ++high) {
    if (rows.contains(high)) {
      out << "kRow" << page.number << "_" << high << ",\n";
    } else {
      out << "nullptr,";
    }
  }
  out << "};\n";
}

void WriteTables(std::ostream& out, const std::map<int, Page>& pages) {
  out << "// Generated from the data files in src/base/codepages.\n"
         "#include \"base/CodePageTables.h\"\n\nnamespace logbook {\nnamespace {\n";
  for (const auto& [number, page] : pages) {
    WriteDecoding(out, page);
    WriteEncoding(out, page);
  }
  out << "}  // namespace\n\n"
         "constinit const std::array<CodePageTable, "
      << pages.size() << "> kCodePageTables = {{\n";
  for (const auto& [number, page] : pages) {
    const std::string id = std::to_string(number);
    out << "{" << id << ", kSingles" << id << ", "
        << (page.leads.empty() ? "nullptr" : "kPairs" + id) << ", "
        << (page.leads.empty() ? 0 : *page.leads.begin()) << ", kTrails" << id << ", kRows" << id
        << "},\n";
  }
  out << "}};\n\n}  // namespace logbook\n";
}

void Run(const std::vector<std::string>& arguments) {
  if (arguments.size() < 3) Fail("usage: make_code_pages OUTPUT BESTFIT.TSV PAGE.TXT...");
  std::map<int, Page> pages;
  for (std::size_t i = 2; i < arguments.size(); ++i) {
    Page page = ReadPage(arguments[i]);
    pages.emplace(page.number, std::move(page));
  }
  AddSimilar(pages, arguments[1]);
  std::ofstream out(arguments[0], std::ios::binary);
  WriteTables(out, pages);
  if (!out.flush()) Fail("cannot write " + arguments[0]);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Run({argv + 1, argv + argc});
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "make_code_pages: " << error.what() << "\n";
    return 1;
  }
}
