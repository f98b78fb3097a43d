// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Turns the resource data files into source: make_resources OUT.h OUT.cpp ARRANGE STRINGS...
//
// A strings file holds one string a line: number, one tab, text in UTF-8. Lines that begin with
// "#" and empty lines do not count; the text is taken as it stands, blanks at its ends included.
// The arrangement holds one list a line; each becomes the list and one NUL, and a second NUL ends
// them all. Any other line, and a number that stands twice in all files together, is an error.

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>

namespace {

using Strings = std::map<int, std::string>;

[[noreturn]] void Fail(const std::string& file, int line, const std::string& what) {
  throw std::runtime_error(file + ":" + std::to_string(line) + ": " + what);
}

std::ifstream Open(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error(file + ": cannot be read");
  return in;
}

void ReadStrings(const std::string& file, Strings& strings) {
  std::ifstream in = Open(file);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t tab = line.find('\t');
    int id = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), id);
    if (tab == std::string::npos || error != std::errc() || end != line.data() + tab || id <= 0)
      Fail(file, number, "not a number, a tab and a text");
    if (tab + 1 == line.size()) Fail(file, number, "the text is missing");
    if (!strings.emplace(id, line.substr(tab + 1)).second)
      Fail(file, number, "number " + std::to_string(id) + " stands twice");
  }
}

std::string ReadArrangement(const std::string& file) {
  std::ifstream in = Open(file);
  std::string line;
  std::string lists;
  while (std::getline(in, line)) {
    if (line.empty() || line.front() == '#') continue;
    lists += line + '\0';
  }
  if (lists.empty()) throw std::runtime_error(file + ": holds no list");
  return lists + '\0';
}

// A C++ literal; every byte outside plain printable ASCII as an octal escape of three digits.
std::string Literal(const std::string& text) {
  std::string literal = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      literal += std::string("\\") + c;
    } else if (c >= ' ' && c <= '~' && c != '?') {
      literal += c;
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned char>(c));
      literal += escape;
    }
  }
  return literal + "\"";
}

void WriteHeader(const std::string& file, const Strings& strings) {
  std::ofstream out(file, std::ios::binary);
  out << "// Made from the strings files. The numbers of all strings, ascending.\n"
         "#pragma once\n\n#include <algorithm>\n#include <iterator>\n\nnamespace logbook {\n\n"
         "inline constexpr int kStringNumbers[] = {\n";
  for (const auto& entry : strings) out << "    " << entry.first << ",\n";
  out << "};\n\n// True if there is a string of this number.\n"
         "constexpr bool HasString(int number) {\n"
         "  return std::binary_search(std::begin(kStringNumbers), std::end(kStringNumbers), "
         "number);\n}\n\n}  // namespace logbook\n";
}

void WriteSource(const std::string& file, const Strings& strings, const std::string& arrangement) {
  std::ofstream out(file, std::ios::binary);
  out << "// Made from the resource data files.\n#include \"resources/ResourceData.h\"\n\n"
         "namespace logbook {\n\nnamespace {\n\nconstexpr StringResource kStrings[] = {\n";
  for (const auto& [number, text] : strings)
    out << "    {" << number << ", " << Literal(text) << "},\n";
  out << "};\n\nconstexpr char kArrangement[] = " << Literal(arrangement)
      << ";\n\n}  // namespace\n\n"
         "std::span<const StringResource> StringData() { return kStrings; }\n"
         "std::string_view ArrangementData() { return {kArrangement, sizeof kArrangement - 1}; }\n"
         "\n}  // namespace logbook\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc < 5)
      throw std::runtime_error("usage: make_resources OUT.h OUT.cpp ARRANGE STRINGS...");
    Strings strings;
    for (int i = 4; i < argc; ++i) ReadStrings(argv[i], strings);
    WriteHeader(argv[1], strings);
    WriteSource(argv[2], strings, ReadArrangement(argv[3]));
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
