// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <string>
#include <string_view>

namespace logbook::cli {
namespace {

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

// The first of the variables that is set decides.
bool LocaleIsUtf8() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    std::string locale(Variable(name));
    if (locale.empty()) continue;
    std::transform(locale.begin(), locale.end(), locale.begin(),
                   [](unsigned char each) { return static_cast<char>(std::tolower(each)); });
    return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
  }
  return false;
}

int ColumnsOf(bool terminal, int usual) {
  winsize size{};
  if (terminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    return size.ws_col;
  }
  const std::string_view typed = Variable("COLUMNS");
  int columns = 0;
  const auto [end, error] = std::from_chars(typed.data(), typed.data() + typed.size(), columns);
  return error == std::errc() && columns > 0 ? columns : usual;
}

}  // namespace

TerminalFacts LookAtTerminal() {
  TerminalFacts facts;
  facts.terminal = isatty(STDOUT_FILENO) == 1;
  facts.columns = ColumnsOf(facts.terminal, facts.columns);
  facts.unicode = LocaleIsUtf8();
  const std::string_view kind = Variable("TERM");
  facts.color = facts.terminal && Variable("NO_COLOR").empty() && !kind.empty() && kind != "dumb";
  return facts;
}

// Nothing is done to them here.
void LeaveBytesAlone() {}

bool ErrorsGoToTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

}  // namespace logbook::cli
