// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Completion.h"

#include <algorithm>

#include "CompletionShells.h"
#include "insight/LogReading.h"
#include "insight/RowNames.h"

namespace logbook::cli {
namespace {

using Words = std::vector<std::string>;

void Append(Words& words, const Words& more) {
  words.insert(words.end(), more.begin(), more.end());
}

Words CatalogueBeginnings() {
  Words words;
  for (const insight::CatalogueInfo& each : insight::kCatalogues) {
    words.push_back(std::string(each.Name) + ":");
  }
  return words;
}

Words CatalogueNames() {
  Words words;
  for (const insight::CatalogueInfo& each : insight::kCatalogues) words.emplace_back(each.Name);
  return words;
}

Words QueryWords() {
  Words words = {"after:", "before:", "on:", "tick:", "option:", "auto:", "state:"};
  Append(words, CatalogueBeginnings());
  Append(words, {"OR", "NOT"});
  return words;
}

Words OptionKeys() {
  Words words;
  for (const OptionKey& each : kOptionKeys) words.emplace_back(each.Key);
  return words;
}

Words StateNames() {
  using insight::ValueState;
  Words words;
  for (const ValueState state :
       {ValueState::kOk, ValueState::kNotApplicable, ValueState::kFileMissing,
        ValueState::kFileShort, ValueState::kNoNumber}) {
    words.emplace_back(NameOf(state));
  }
  return words;
}

Words InDoubleQuotes(Words words) {
  for (std::string& word : words) word = '"' + word + '"';
  return words;
}

// The words that a kind stands for, whatever verb asks for it.
std::vector<std::pair<std::string, Words>> FixedWords() {
  Words columns = {"date", "log", "root", "auto", "ticks", "comment"};
  Append(columns, CatalogueBeginnings());
  Words keys = {"date", "log"};
  Append(keys, CatalogueBeginnings());
  Words rows = CatalogueNames();
  Append(rows, CatalogueBeginnings());
  return {{"COLUMN,...", columns},
          {"KEY", keys},
          {"ROW", CatalogueBeginnings()},
          {"ROWS", rows},
          {"ITEM", insight::TickLabels()},
          {"QUERY", QueryWords()},
          {"QUERY:tick", InDoubleQuotes(insight::TickLabels())},
          {"QUERY:option", OptionKeys()},
          {"QUERY:auto", {"yes", "no"}},
          {"QUERY:state", StateNames()}};
}

std::string PrintingWords(const std::string& kind, const Words& words) {
  std::string text = "    " + ShellQuoted(kind) + ") printf '%s\\n'";
  for (const std::string& word : words) text += ' ' + ShellQuoted(word);
  return text + " ;;\n";
}

Words NamesOf(const std::vector<CompletedVerb>& table) {
  Words names;
  for (const CompletedVerb& verb : table) {
    if (!verb.name.empty()) names.push_back(verb.name);
  }
  return names;
}

}  // namespace

std::string ShellQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char byte : text) {
    if (byte == '\'') {
      quoted += "'\\''";
    } else {
      quoted += byte;
    }
  }
  return quoted + "'";
}

std::string CompletionWords(const std::vector<CompletedVerb>& table) {
  std::string text =
      "# _logbookctl_words KIND: the words of a kind, a line each.\n"
      "_logbookctl_words() {\n"
      "  case $1 in\n" +
      PrintingWords("VERB", NamesOf(table));
  for (const auto& [kind, words] : FixedWords()) text += PrintingWords(kind, words);
  for (const insight::CatalogueInfo& each : insight::kCatalogues) {
    const std::string name(each.Name);
    text += "    " + ShellQuoted("ROW:" + name) + ") _logbookctl_labels " + name + " ;;\n";
    text += "    " + ShellQuoted("QUERY:" + name) + ") _logbookctl_labels " + name +
            " | sed 's/.*[^A-Za-z0-9].*/\"&\"/' ;;\n";
  }
  return text +
         "    NAME) logbookctl diff --baselines 2>/dev/null | cut -f 1 ;;\n"
         "  esac\n"
         "}\n\n"
         "# _logbookctl_labels CATALOGUE: the labels of its rows.\n"
         "_logbookctl_labels() {\n"
         "  logbookctl catalogue \"$1\" 2>/dev/null | sed 1d | cut -f 2 | LC_ALL=C sort -u\n"
         "}\n";
}

std::string CompletionScript(const std::vector<CompletedVerb>& table, std::string_view shell) {
  return shell == "zsh" ? ZshCompletion(table) : BashCompletion(table);
}

}  // namespace logbook::cli
