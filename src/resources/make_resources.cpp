// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Turns the resource data files into source: make_resources OUT.h OUT.cpp FOLDER...
//
// Each folder is a language and its name the language's id; the first is the one that the others
// are held against. A folder holds
//
//   strings.txt, catalogue_strings.txt   one string a line: number, one tab, text in UTF-8
//   arrange.txt and its neighbours       one list a line; each becomes the list and one NUL, and a
//                                        second NUL ends them all
//   language.txt                         one fact a line: word, one tab, value
//
// Lines that begin with "#" and empty lines do not count; a text is taken as it stands, blanks at
// its ends included. Any other line is an error, and so are a number that stands twice in all
// strings of a language, one that another language lacks, and a text with other placeholders ("%1",
// "&P" and the like) than that of the first language.

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Strings = std::map<int, std::string>;

// File of an arrangement and its name as a resource.
struct ArrangementFile {
  const char* file;
  const char* id;
};
constexpr ArrangementFile kArrangements[] = {
    {"arrange.txt", "IDRES_LOGBOOK_ARRANGE"},
    {"arrange_editor.txt", "IDRES_EDITOR_ARRANGE"},
    {"arrange_viewer.txt", "IDRES_VIEWER_ARRANGE"},
    {"arrange_chooser.txt", "IDRES_CHOOSER_ARRANGE"},
};

constexpr const char* kFacts[] = {"name", "pages", "toolkit", "manual"};

struct Language {
  std::string id;
  Strings strings;
  std::vector<std::string> arrangements;     // in the order of kArrangements
  std::map<std::string, std::string> facts;  // by the words of kFacts
};

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

std::map<std::string, std::string> ReadFacts(const std::string& file) {
  std::ifstream in = Open(file);
  std::map<std::string, std::string> facts;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line.front() == '#') continue;
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos || tab + 1 == line.size()) Fail(file, number, "not a fact");
    const std::string word = line.substr(0, tab);
    if (std::find(std::begin(kFacts), std::end(kFacts), word) == std::end(kFacts))
      Fail(file, number, "no fact of a language");
    facts[word] = line.substr(tab + 1);
  }
  for (const char* word : kFacts) {
    if (facts.count(word) == 0) throw std::runtime_error(file + ": \"" + word + "\" is missing");
  }
  return facts;
}

Language ReadLanguage(std::string folder) {
  while (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  Language language;
  language.id = folder.substr(folder.rfind('/') + 1);
  ReadStrings(folder + "/strings.txt", language.strings);
  ReadStrings(folder + "/catalogue_strings.txt", language.strings);
  for (const ArrangementFile& each : kArrangements)
    language.arrangements.push_back(ReadArrangement(folder + "/" + each.file));
  language.facts = ReadFacts(folder + "/language.txt");
  return language;
}

// What a program puts something in place of: "%1" to "%9", and the codes of page footers.
std::vector<std::string> Placeholders(const std::string& text) {
  std::vector<std::string> found;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    const bool numbered = text[i] == '%' && text[i + 1] >= '1' && text[i + 1] <= '9';
    const bool page_code = text.find("&P/&N") != std::string::npos && text[i] == '&';
    if (numbered || page_code) found.push_back(text.substr(i, 2));
  }
  std::sort(found.begin(), found.end());
  return found;
}

// The pattern of a file filter: "|*.zip" of "Archive file(*.zip)|*.zip".
std::string PatternBehindBar(const std::string& text) {
  const std::size_t bar = text.find('|');
  return bar == std::string::npos ? std::string() : text.substr(bar);
}

void Compare(const Language& language, const Language& first) {
  for (const auto& [number, text] : first.strings) {
    const std::string where = language.id + ": string " + std::to_string(number);
    const auto found = language.strings.find(number);
    if (found == language.strings.end()) throw std::runtime_error(where + " is missing");
    if (Placeholders(found->second) != Placeholders(text) ||
        PatternBehindBar(found->second) != PatternBehindBar(text))
      throw std::runtime_error(where + " has other placeholders");
  }
  for (const auto& [number, text] : language.strings) {
    if (first.strings.count(number) == 0)
      throw std::runtime_error(language.id + ": string " + std::to_string(number) + " is not in " +
                               first.id);
  }
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

// A file that holds this already keeps its time, so that nothing is built anew for it.
void Write(const std::string& file, const std::string& text) {
  std::ifstream old(file, std::ios::binary);
  const std::string held{std::istreambuf_iterator<char>(old), {}};
  if (!old || held != text) std::ofstream(file, std::ios::binary) << text;
}

std::string Header(const Strings& strings) {
  std::ostringstream out;
  out << "// Made from the strings files. The numbers of all strings, ascending.\n"
         "#pragma once\n\n#include <algorithm>\n#include <iterator>\n\nnamespace logbook {\n\n"
         "inline constexpr int kStringNumbers[] = {\n";
  for (const auto& entry : strings) out << "    " << entry.first << ",\n";
  out << "};\n\n// True if there is a string of this number.\n"
         "constexpr bool HasString(int number) {\n"
         "  return std::binary_search(std::begin(kStringNumbers), std::end(kStringNumbers), "
         "number);\n}\n\n}  // namespace logbook\n";
  return out.str();
}

// A text with its length: it may hold NULs.
std::string View(const std::string& text) {
  return "{" + Literal(text) + ", " + std::to_string(text.size()) + "}";
}

void WriteTables(std::ostream& out, const Language& language) {
  out << "constexpr StringResource kStrings_" << language.id << "[] = {\n";
  for (const auto& [number, text] : language.strings)
    out << "    {" << number << ", " << Literal(text) << "},\n";
  out << "};\n\nconstexpr DataResource kData_" << language.id << "[] = {\n";
  for (std::size_t i = 0; i < language.arrangements.size(); ++i)
    out << "    {\"" << kArrangements[i].id << "\", " << View(language.arrangements[i]) << "},\n";
  out << "};\n\n";
}

std::string Source(const std::vector<Language>& languages) {
  std::ostringstream out;
  out << "// Made from the resource data files.\n#include \"resources/ResourceData.h\"\n\n"
         "namespace logbook {\n\nnamespace {\n\n";
  for (const Language& language : languages) WriteTables(out, language);
  out << "constexpr LanguageData kLanguages[] = {\n";
  for (const Language& language : languages) {
    const std::string toolkit = language.facts.at("toolkit");
    out << "    {{\"" << language.id << "\", " << Literal(language.facts.at("name")) << ", "
        << Literal(language.facts.at("pages")) << ", "
        << Literal(toolkit == "none" ? std::string() : toolkit) << ", "
        << Literal(language.facts.at("manual")) << "}, kStrings_" << language.id << ", kData_"
        << language.id << "},\n";
  }
  out << "};\n\n}  // namespace\n\n"
         "std::span<const LanguageData> LanguageTables() { return kLanguages; }\n"
         "\n}  // namespace logbook\n";
  return out.str();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc < 4) throw std::runtime_error("usage: make_resources OUT.h OUT.cpp FOLDER...");
    std::vector<Language> languages;
    for (int i = 3; i < argc; ++i) {
      languages.push_back(ReadLanguage(argv[i]));
      Compare(languages.back(), languages.front());
    }
    Write(argv[1], Header(languages.front().strings));
    Write(argv[2], Source(languages));
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
