// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Completion.h"
#include "CompletionShells.h"

namespace logbook::cli {
namespace {

constexpr const char* kHead =
    "# bash completion of logbookctl, as \"logbookctl --completion bash\" prints it.\n\n";

// The shell parts words at ":" and "=" too; here they are joined again, and what is offered is
// shortened by what the shell has parted off.
constexpr const char* kBody = R"sh(
# _logbookctl_offer WORD...: offers those that begin with the word at the cursor.
_logbookctl_offer() {
  local word typed=$value quote= open=yes
  case $typed in
    [\"\']*) quote=${typed:0:1} typed=${typed:1} ;;
    *) typed=${typed//\\/} ;;
  esac
  for word in "$@"; do
    [[ $word == "$typed"* ]] || continue
    [[ $word == *: ]] || open=
    word=$head$word
    word=${word#"${parted//\\/}"}
    [[ $quote ]] || printf -v word %q "$word"
    COMPREPLY+=("$word")
  done
  [[ ! $open ]] || compopt -o nospace
}

# _logbookctl_lines COMMAND...: the same for the lines that a command prints.
_logbookctl_lines() {
  local lines
  mapfile -t lines < <("$@")
  _logbookctl_offer "${lines[@]}"
}

# The names of the logs below the roots of this command line.
_logbookctl_logs() {
  local i root roots=()
  for ((i = 1; i < ${#words[@]}; i++)); do
    [[ ${words[i]} != --log-root ]] || roots+=("${words[i + 1]}")
    [[ ${words[i]} != --log-root=* ]] || roots+=("${words[i]#*=}")
  done
  [[ ${#roots[@]} -gt 0 ]] || roots=("$LOGBOOK_ROOT")
  for root in "${roots[@]}"; do
    root=${root//[\\\"\']/}
    (cd -- "${root/#\~/$HOME}" 2>/dev/null && compgen -d)
  done
}

# What may stand in a place of this kind.
_logbookctl_value() {
  local kind=$1 field choices
  case $kind in
    FILE) compopt -o default ;;
    DIR | LOGFOLDER) compopt -o dirnames ;;
    LOG) compopt -o dirnames && _logbookctl_lines _logbookctl_logs ;;
    =*) IFS=' ' read -r -a choices <<<"${kind#=}" && _logbookctl_offer "${choices[@]}" ;;
    *)
      if [[ $kind == COLUMN* ]]; then
        head+=${value%"${value##*,}"}
        value=${value##*,}
      fi
      if [[ $value == *:* ]]; then
        field=${value%%:*}
        head+=$field:
        value=${value#*:}
        [[ $kind == QUERY ]] || kind=ROW
        kind+=:$field
      fi
      _logbookctl_lines _logbookctl_words "$kind"
      ;;
  esac
}

_logbookctl() {
  local line=$COMP_LINE words=() given= option= verb= count=0 word i
  for ((i = 0; i <= COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if [[ $i -gt 0 && $line != [[:space:]]* ]]; then
      words[${#words[@]} - 1]+=$word
    else
      words+=("$word")
    fi
    line=${line#"${line%%[![:space:]]*}"}
    line=${line#"$word"}
  done
  local last=$((${#words[@]} - 1)) head= parted piece=${COMP_WORDS[COMP_CWORD]}
  local value=${words[last]}
  [[ $piece != [:=] ]] || piece=
  parted=${value%"$piece"}
  for word in "${words[@]:1:last-1}"; do
    if [[ $option ]]; then
      option=
    elif [[ $word == -* ]]; then
      given+=" ${word%%=*} "
      [[ $word == *=* || ! $(_logbookctl_kind "$verb" "$word") ]] || option=$word
    elif [[ ! $verb ]]; then
      verb=$word
    else
      ((++count))
    fi
  done
  COMPREPLY=()
  if [[ $option ]]; then
    _logbookctl_value "$(_logbookctl_kind "$verb" "$option")"
  elif [[ $value == --*=* ]]; then
    option=${value%%=*}
    head=$option=
    value=${value#*=}
    _logbookctl_value "$(_logbookctl_kind "$verb" "$option")"
  elif [[ $value == -* ]]; then
    for word in $(_logbookctl_options "$verb"); do
      [[ $given == *" ${word%+} "* && $word != *+ ]] || _logbookctl_offer "${word%+}"
    done
  elif [[ ! $verb ]]; then
    _logbookctl_lines _logbookctl_words VERB
  else
    _logbookctl_value "$(_logbookctl_kind "$verb" "$((count + 1))")"
  fi
}

complete -F _logbookctl logbookctl)sh";

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

// A kind, or "=" with all that may stand in the place.
std::string KindOf(const CompletedPlace& place) {
  return ShellQuoted(place.choices.empty() ? place.kind : "=" + Joined(place.choices));
}

// The options of the program itself stand with those of each verb.
std::string OptionsOf(const CompletedVerb& program, const CompletedVerb& verb) {
  std::vector<std::string> names;
  for (const CompletedOption& option : verb.options) {
    for (const std::string& name : option.names) {
      names.push_back(name + (option.value.repeats ? "+" : ""));
    }
  }
  if (&verb != &program) {
    for (const CompletedOption& option : program.options) {
      if (!option.value.kind.empty() && option.value.choices.empty()) {
        names.insert(names.end(), option.names.begin(), option.names.end());
      }
    }
  }
  return Joined(names);
}

std::string KindsOf(const CompletedVerb& verb) {
  std::string text;
  for (const CompletedOption& option : verb.options) {
    if (option.value.kind.empty()) continue;
    for (const std::string& name : option.names) {
      text += "    " + (verb.name.empty() ? "*" : verb.name) + ":" + name + ") echo " +
              KindOf(option.value) + " ;;\n";
    }
  }
  for (std::size_t i = 0; i < verb.words.size(); ++i) {
    const std::string place = verb.words[i].repeats ? "[1-9]*" : std::to_string(i + 1);
    text += "    " + verb.name + ":" + place + ") echo " + KindOf(verb.words[i]) + " ;;\n";
  }
  return text;
}

}  // namespace

std::string BashCompletion(const std::vector<CompletedVerb>& table) {
  std::string text = kHead + CompletionWords(table) +
                     "\n# _logbookctl_options VERB: its options; behind one that may stand several "
                     "times a \"+\".\n"
                     "_logbookctl_options() {\n"
                     "  case $1 in\n";
  for (const CompletedVerb& verb : table) {
    text +=
        "    " + ShellQuoted(verb.name) + ") echo '" + OptionsOf(table.front(), verb) + "' ;;\n";
  }
  text +=
      "  esac\n}\n\n"
      "# _logbookctl_kind VERB PLACE: what stands behind an option, or in the place of this number "
      "from 1.\n"
      "_logbookctl_kind() {\n"
      "  case $1:$2 in\n";
  for (const CompletedVerb& verb : table) text += KindsOf(verb);
  return text + "  esac\n}\n" + kBody;
}

}  // namespace logbook::cli
