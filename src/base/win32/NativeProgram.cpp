// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/NativeProgram.h"

#include <algorithm>

#include "base/UpperCase.h"
#include "base/win32/Status.h"
#include "base/win32/SystemError.h"

namespace logbook {

namespace {

// One argument as programs take a command line apart: between quotes, a quote with a backslash
// before it, and backslashes before a quote doubled.
std::wstring Quoted(const std::string& argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t unit : win32::Wide(argument)) {
    if (unit == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = unit == L'\\' ? backslashes + 1 : 0;
    quoted += unit;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

// Programs are called by their names without the extension that they have here.
std::string WithExtension(const std::string& program) {
  constexpr char kExtension[] = ".exe";
  return EndsInIgnoringCase(program, kExtension) ? program : program + kExtension;
}

}  // namespace

std::string OwnProgramFolder() {
  std::wstring buffer(32768, L'\0');
  const DWORD length =
      GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
  std::string program = win32::Narrow(std::wstring_view(buffer).substr(0, length));
  std::replace(program.begin(), program.end(), '\\', '/');
  return length == 0 ? std::string() : win32::ParentOf(program);
}

bool StartDetached(const std::string& program, const std::vector<std::string>& arguments) {
  const std::string file = WithExtension(program);
  if (!win32::IsThere(file) || win32::IsFolder(file)) return false;
  std::wstring path = win32::Wide(file);
  std::replace(path.begin(), path.end(), L'/', L'\\');
  std::wstring line = Quoted(file);
  for (const std::string& argument : arguments) line += L' ' + Quoted(argument);
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION started = {};
  if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE,
                      DETACHED_PROCESS | CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &start,
                      &started))
    return false;
  CloseHandle(started.hThread);
  CloseHandle(started.hProcess);
  return true;
}

}  // namespace logbook
