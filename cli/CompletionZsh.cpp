// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Completion.h"
#include "CompletionShells.h"

namespace logbook::cli {
namespace {

constexpr const char* kHead =
    "#compdef logbookctl\n"
    "# zsh completion of logbookctl, as \"logbookctl --completion zsh\" prints it.\n\n";

constexpr const char* kBody = R"sh(
# _logbookctl_offer COMMAND...: offers the lines that a command prints.
_logbookctl_offer() {
  local -a lines
  lines=("${(@f)$("$@")}")
  compadd -S '' -- ${(M)lines:#*:}
  compadd -- ${lines:#*:}
}

# The names of the logs below the roots of this command line.
_logbookctl_logs() {
  local i
  local -a roots
  for ((i = 1; i <= $#words; i++)); do
    [[ $words[i] == --log-root ]] && roots+=("${(Q)words[i + 1]}")
    [[ $words[i] == --log-root=* ]] && roots+=("${(Q)words[i]#*=}")
  done
  (($#roots)) || roots=("$LOGBOOK_ROOT")
  print -rl -- ${^roots/#\~/$HOME}/*(N/:t)
}

# What may stand in a place of this kind.
_logbookctl_value() {
  local kind=$1
  case $kind in
    FILE) _files ;;
    DIR | LOGFOLDER) _files -/ ;;
    LOG) _logbookctl_offer _logbookctl_logs || _files -/ ;;
    *)
      [[ $kind == COLUMN* ]] && compset -P '*,'
      if [[ $PREFIX == *:* ]]; then
        [[ $kind == QUERY ]] || kind=ROW
        kind+=:${PREFIX%%:*}
        compset -P '*:'
      fi
      _logbookctl_offer _logbookctl_words "$kind"
      ;;
  esac
}

_logbookctl "$@")sh";

// A description inside of brackets, and what stands before and behind a colon.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char byte : text) {
    if (byte == '[' || byte == ']' || byte == ':' || byte == '\\') escaped += '\\';
    escaped += byte;
  }
  return escaped;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string ActionOf(const CompletedPlace& place) {
  const std::string name = ":" + Escaped(place.kind) + ":";
  if (!place.choices.empty()) return name + "(" + Joined(place.choices) + ")";
  return name + " _logbookctl_value " + ShellQuoted(place.kind);
}

std::string SpecOf(const CompletedOption& option, const std::string& name) {
  std::string text;
  if (option.value.repeats) {
    text = "*";
  } else if (!option.excludes.empty()) {
    text = "(" + Joined(option.excludes) + ")";
  }
  text += name + (option.value.kind.empty() ? "" : "=") + "[" + Escaped(option.description) + "]";
  return ShellQuoted(text + (option.value.kind.empty() ? "" : ActionOf(option.value)));
}

std::string OptionsOf(const CompletedVerb& verb, const std::string& indent) {
  std::string text;
  for (const CompletedOption& option : verb.options) {
    for (const std::string& name : option.names) {
      text += " \\\n" + indent + SpecOf(option, name);
    }
  }
  return text;
}

std::string CaseOf(const CompletedVerb& program, const CompletedVerb& verb) {
  std::string text = "    " + verb.name + ")\n      _arguments" + OptionsOf(verb, "        ");
  for (const CompletedOption& option : program.options) {
    if (option.value.kind.empty() || !option.value.choices.empty()) continue;
    text += " \\\n        " + SpecOf(option, option.names.front());
  }
  for (const CompletedPlace& place : verb.words) {
    text += " \\\n        " + ShellQuoted((place.repeats ? "*" : "") + ActionOf(place));
  }
  return text + "\n      ;;\n";
}

}  // namespace

std::string ZshCompletion(const std::vector<CompletedVerb>& table) {
  const CompletedVerb& program = table.front();
  std::string text = kHead + CompletionWords(table) +
                     "\n_logbookctl() {\n"
                     "  local curcontext=$curcontext state line\n"
                     "  local -a verbs\n"
                     "  _arguments -C" +
                     OptionsOf(program, "    ") +
                     " \\\n    '1: :->verb' '*:: :->words' && return\n"
                     "  if [[ $state == verb ]]; then\n"
                     "    verbs=(\n";
  for (const CompletedVerb& verb : table) {
    if (verb.name.empty()) continue;
    text += "      " + ShellQuoted(verb.name + ":" + verb.description) + "\n";
  }
  text +=
      "    )\n"
      "    _describe verb verbs\n"
      "    return\n"
      "  fi\n"
      "  case $words[1] in\n";
  for (const CompletedVerb& verb : table) {
    if (!verb.name.empty()) text += CaseOf(program, verb);
  }
  return text + "  esac\n}\n" + kBody;
}

}  // namespace logbook::cli
