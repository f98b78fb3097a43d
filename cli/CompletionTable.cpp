// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "CompletionTable.h"

#include <sstream>

namespace logbook::cli {
namespace {

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, ',');) parts.push_back(part);
  return parts;
}

// A check against a list stands behind the type's name, as "TEXT:{csv,jsonl}".
CompletedPlace PlaceOf(const CLI::Option& option, const std::string& usual_kind) {
  CompletedPlace place;
  const std::string type = option.get_type_name();
  if (type.empty()) return place;
  place.kind = type.substr(0, type.find(':'));
  if (place.kind.empty() || place.kind == "TEXT") place.kind = usual_kind;
  const std::size_t begin = type.find(":{");
  const std::size_t end = type.find('}');
  if (begin != std::string::npos && end != std::string::npos) {
    place.choices = Split(type.substr(begin + 2, end - begin - 2));
  }
  place.repeats = option.get_items_expected_max() > 1;
  return place;
}

CompletedOption OptionOf(const CLI::Option& option) {
  CompletedOption result;
  for (const std::string& name : option.get_lnames()) result.names.push_back("--" + name);
  result.description = option.get_description();
  result.value = PlaceOf(option, "TEXT");
  for (const CLI::Option* other : option.get_excludes()) {
    for (const std::string& name : other->get_lnames()) result.excludes.push_back("--" + name);
  }
  return result;
}

CompletedVerb VerbOf(const CLI::App& app, const std::string& name) {
  CompletedVerb verb = {name, app.get_description(), {}, {}};
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional()) {
      verb.words.push_back(PlaceOf(*option, option->get_single_name()));
    } else {
      verb.options.push_back(OptionOf(*option));
    }
  }
  return verb;
}

}  // namespace

std::vector<CompletedVerb> CompletionTable(const CLI::App& app) {
  std::vector<CompletedVerb> table = {VerbOf(app, "")};
  for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; })) {
    table.push_back(VerbOf(*verb, verb->get_name()));
  }
  return table;
}

}  // namespace logbook::cli
