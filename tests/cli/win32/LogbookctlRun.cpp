// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The program lies beside the tests'. The user's folders have other variables here.

#include "cli/LogbookctlRun.h"

#include <algorithm>
#include <list>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "base/win32/System.h"
#include "support/EnvironmentVariable.h"
#include "support/win32/SkipCase.h"

namespace logbook::test {
namespace {

using win32::Handle;

constexpr std::pair<const char*, const char*> kVariables[] = {
    {"XDG_CACHE_HOME", "LOCALAPPDATA"}, {"XDG_CONFIG_HOME", "APPDATA"}, {"HOME", "USERPROFILE"}};

// The words of a command line as a shell reads them that does nothing but quotes.
std::vector<std::string> WordsOf(const std::string& text) {
  std::vector<std::string> words;
  bool in_word = false;
  char quote = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote == 0 && (c == ' ' || c == '\n')) {
      in_word = false;
      continue;
    }
    if (quote == 0 && std::string_view("|<>;&$*?()`").find(c) != std::string_view::npos)
      SkipCase("the command line needs a shell");
    if (!std::exchange(in_word, true)) words.emplace_back();
    if (c == quote) {
      quote = 0;
    } else if (quote == 0 && (c == '\'' || c == '"')) {
      quote = c;
    } else if (c == '\\' && quote != '\'' && i + 1 < text.size()) {
      words.back() += text[++i];
    } else {
      words.back() += c;
    }
  }
  return words;
}

// A native path is written so that it means no drive of the home.
std::string Told(std::string word) {
  const bool native = word.size() > 2 && word[1] == ':' && word[2] == '/';
  if (!native) return word;
  std::replace(word.begin(), word.end(), '/', '\\');
  return "\\\\?\\" + word;
}

// The word as the system's programs read it back.
std::wstring ForCommandLine(const std::string& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : win32::Wide(word)) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L"\"";
}

std::string ProgramPath() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return win32::Narrow(path.substr(0, path.rfind(L'\\') + 1)) + "logbookctl.exe";
}

Handle ChannelTo(const std::string& file) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return Handle(CreateFileW(win32::Wide(file).c_str(), GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Wine loses a process now and then before its program has begun, and says that it did.
bool Starts(std::wstring& line, STARTUPINFOW& start, PROCESS_INFORMATION& process) {
  for (int tries = 0; tries < 3; ++tries) {
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &process))
      return true;
    if (GetLastError() != ERROR_INTERNAL_ERROR) return false;
  }
  return false;
}

int RunToEnd(std::wstring line, const std::string& out, const std::string& err) {
  const Handle in = ChannelTo("NUL"), out_channel = ChannelTo(out), err_channel = ChannelTo(err);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = in.Value();
  start.hStdOutput = out_channel.Value();
  start.hStdError = err_channel.Value();
  PROCESS_INFORMATION process = {};
  if (!Starts(line, start, process))
    throw std::runtime_error("error " + std::to_string(GetLastError()) + ": cannot start " +
                             win32::Narrow(line));
  const Handle program(process.hProcess), thread(process.hThread);
  WaitForSingleObject(program.Value(), INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(program.Value(), &status);
  return static_cast<int>(status);
}

}  // namespace

Outcome RunLogbookctl(const std::string& home, const std::string& arguments,
                      const std::string& variables) {
  std::list<std::string> names;  // which outlive the changes
  std::list<EnvironmentVariable> changed;
  changed.emplace_back("LOGBOOK_HOME", home.c_str());
  for (const std::string& word : WordsOf(variables)) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos) SkipCase("the command line needs a shell");
    std::string& name = names.emplace_back(word.substr(0, sign));
    for (const auto& [elsewhere, here] : kVariables)
      if (name == elsewhere) name = here;
    const std::string value = word.substr(sign + 1);
    changed.emplace_back(name.c_str(), (name == "LOGBOOK_ROOT" ? Told(value) : value).c_str());
  }
  std::wstring line = ForCommandLine(ProgramPath());
  std::string before;
  for (const std::string& word : WordsOf(arguments)) {
    // This option's folder is native in any case.
    line += L" " + ForCommandLine(before == "--app" ? word : Told(word));
    before = word;
  }
  const TestMachine scratch;
  const std::string out = scratch.home() + "/out", err = scratch.home() + "/err";
  Outcome outcome;
  outcome.status = RunToEnd(line, out, err);
  outcome.out = Read(out);
  outcome.err = Read(err);
  return outcome;
}

}  // namespace logbook::test
