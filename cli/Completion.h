// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The scripts by which shells complete the command line of logbookctl. They hold the parser's own
// table (CompletionTable.h); labels of rows and names of baselines they ask of the program. Pure;
// raises nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CompletionTable.h"

namespace logbook::cli {

// The shells that there are scripts for.
inline constexpr auto kCompletedShells = std::to_array<std::string_view>({"bash", "zsh"});

// The script for one of them. It ends without a line feed.
std::string CompletionScript(const std::vector<CompletedVerb>& table, std::string_view shell);

// What both scripts have in common: the shell function _logbookctl_words, which prints, a line
// each, the words that may stand in a place of a kind. Behind "field:" of a query the kind is
// "QUERY:field".
std::string CompletionWords(const std::vector<CompletedVerb>& table);

// The text as one word of a shell.
std::string ShellQuoted(std::string_view text);

}  // namespace logbook::cli
