// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What may stand where on the command line, taken from the tables that the parser itself reads: so
// a completion never offers what the program would refuse. Raises nothing.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace logbook::cli {

// A place for a value: of an option, or a word of a verb.
struct CompletedPlace {
  std::string kind;                  // what the help text calls it: "FILE", "ROW"; empty for a flag
  std::vector<std::string> choices;  // all that it may be; empty if there is no such list
  bool repeats = false;              // may stand several times
};

struct CompletedOption {
  std::vector<std::string> names;  // the long ones, with their dashes
  std::string description;
  CompletedPlace value;
  std::vector<std::string> excludes;  // names of options that may not stand beside it
};

struct CompletedVerb {
  std::string name;  // empty for the program itself
  std::string description;
  std::vector<CompletedOption> options;
  std::vector<CompletedPlace> words;
};

// The program's own part first, then each verb. The options of the program may stand behind a verb
// too.
std::vector<CompletedVerb> CompletionTable(const CLI::App& app);

}  // namespace logbook::cli
