// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "HelpFormatter.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace logbook {
namespace {

constexpr std::size_t kTerminalWidth = 79;

// Where the last part of a line begins.
std::size_t LastPart(const std::string& line) {
  const std::size_t gap = line.rfind("  ");
  return gap == std::string::npos ? 0 : gap + 2;
}

std::string WrappedLine(std::string line, std::size_t width) {
  const std::string indent(LastPart(line), ' ');
  std::string wrapped;
  while (line.size() > width) {
    std::size_t blank = line.rfind(' ', width);
    if (blank == std::string::npos || blank <= indent.size())
      blank = line.find(' ', std::max(width, indent.size()));
    if (blank == std::string::npos) break;
    wrapped += line.substr(0, blank) + "\n";
    line = indent + line.substr(blank + 1);
  }
  return wrapped + line + "\n";
}

}  // namespace

std::string WrappedLines(const std::string& text, std::size_t width) {
  std::istringstream lines(text);
  std::string wrapped;
  for (std::string line; std::getline(lines, line);) wrapped += WrappedLine(line, width);
  return wrapped;
}

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode mode) const {
  return WrappedLines(CLI::Formatter::make_help(app, std::move(name), mode), kTerminalWidth);
}

}  // namespace logbook
