// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/PdfTools.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "support/RunProgram.h"

namespace logbook::test {

namespace {

std::vector<std::string> Split(const std::string& text, char delimiter) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, delimiter);) parts.push_back(part);
  return parts;
}

double Attribute(const std::string& line, const std::string& name) {
  const std::size_t at = line.find(name + "=\"");
  return at == std::string::npos ? -1 : std::atof(line.c_str() + at + name.size() + 2);
}

}  // namespace

bool HasTool(const std::string& name) {
  return HasProgram(name);
}

std::string OutputOf(const std::string& command) {
  const ProgramResult result = RunProgram("( " + command + " ) 2>/dev/null");
  EXPECT_EQ(result.status, 0) << command;
  return result.output;
}

std::vector<std::string> PagesOf(const std::string& pdf) {
  return Split(OutputOf("pdftotext -layout " + Quoted(pdf) + " -"), '\f');
}

std::vector<std::string> LinesOf(const std::string& page) {
  std::vector<std::string> lines = Split(page, '\n');
  for (std::string& line : lines) line.erase(line.find_last_not_of(" \r") + 1);
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  while (!lines.empty() && lines.front().empty()) lines.erase(lines.begin());
  return lines;
}

std::vector<PdfFont> FontsOf(const std::string& pdf) {
  std::vector<std::string> lines = Split(OutputOf("pdffonts " + Quoted(pdf)), '\n');
  std::vector<PdfFont> fonts;
  if (lines.size() < 2) return fonts;
  const std::size_t embedded = lines[0].find("emb");
  for (std::size_t i = 2; i < lines.size(); ++i)
    fonts.push_back({lines[i].substr(0, lines[i].find(' ')), lines[i].at(embedded) == 'y'});
  return fonts;
}

PaperSize PaperOf(const std::string& pdf) {
  PaperSize size;
  const std::string info = OutputOf("pdfinfo " + Quoted(pdf));
  const std::size_t at = info.find("Page size:");
  if (at == std::string::npos) return size;
  std::sscanf(info.c_str() + at, "Page size: %lf x %lf", &size.width, &size.height);
  return size;
}

std::vector<PlacedWord> WordsOf(const std::string& pdf) {
  std::vector<PlacedWord> words;
  int page = 0;
  for (const std::string& line : Split(OutputOf("pdftotext -bbox " + Quoted(pdf) + " -"), '\n')) {
    if (line.find("<page ") != std::string::npos) ++page;
    const std::size_t begin = line.find("\">");
    if (line.find("<word ") == std::string::npos || begin == std::string::npos) continue;
    words.push_back({page, Attribute(line, "xMin"), Attribute(line, "yMin"),
                     Attribute(line, "xMax"), Attribute(line, "yMax"),
                     line.substr(begin + 2, line.rfind("</word>") - begin - 2)});
  }
  return words;
}

bool Picture::DarkBetween(int y, int from, int to) const {
  if (y < 0 || y >= height || to > width) return false;
  for (int x = from; x < to; ++x) {
    if (static_cast<unsigned char>(dots[static_cast<std::size_t>(y * width + x)]) > 200)
      return false;
  }
  return true;
}

Picture PictureOf(const std::string& pdf) {
  const std::string file = OutputOf("pdftoppm -r 72 -gray -f 1 -l 1 " + Quoted(pdf));
  Picture picture;
  int header = 0;
  if (std::sscanf(file.c_str(), "P5 %d %d 255%n", &picture.width, &picture.height, &header) != 2) {
    ADD_FAILURE() << "no picture of " << pdf;
    return picture;
  }
  picture.dots = file.substr(static_cast<std::size_t>(header) + 1);
  return picture;
}

}  // namespace logbook::test
