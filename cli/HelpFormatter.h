// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The help of all verbs, for terminals of the usual width.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace logbook {

// A text with its lines broken between words so that none has more than `width` bytes, but for
// words that are longer by themselves. What goes on stands below the line's last part that two
// blanks part from what is before it, or else below the line's own begin.
std::string WrappedLines(const std::string& text, std::size_t width);

class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;
};

}  // namespace logbook
