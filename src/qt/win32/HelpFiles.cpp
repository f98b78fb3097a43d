// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/win32/HelpFiles.h"

#include <algorithm>

#include "base/Files.h"
#include "base/UpperCase.h"
#include "base/win32/System.h"
#include "help/HelpBook.h"

#undef WinHelp  // a macro of the system renames it

namespace logbook {
namespace {

constexpr std::uint32_t kCloseAll = 18, kInitialize = 28;

using HtmlHelpRoutine = HWND(WINAPI*)(HWND, LPCSTR, UINT, DWORD_PTR);

// Null where there is no engine.
HtmlHelpRoutine FindHtmlHelp() {
  static const HMODULE engine = LoadLibraryW(L"hhctrl.ocx");
  if (engine == nullptr) return nullptr;
  return reinterpret_cast<HtmlHelpRoutine>(
      reinterpret_cast<void*>(GetProcAddress(engine, "HtmlHelpA")));
}

bool IsHelpBook(const std::string& file) {
  return EndsInIgnoringCase(file, kHelpBookExtension);
}

// A file name without folders is looked for by the engine itself.
bool IsMissing(const Machine& machine, const std::string& file) {
  return file.find('\\') != std::string::npos && !Exists(machine, file);
}

// The name as the engines know the file: on a machine with a home of its own the drives lie there.
std::string NameForEngine(const Machine& machine, const std::string& file) {
  const bool has_path = file.find('\\') != std::string::npos;
  std::string name = has_path && !machine.home.empty() ? NativePath(machine, file) : file;
  std::replace(name.begin(), name.end(), '/', '\\');
  return machine.code_page->FromUtf8(name);
}

HWND WindowOf(std::intptr_t window) {
  return reinterpret_cast<HWND>(window);
}

}  // namespace

void HelpFiles::HtmlHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                         std::uint32_t& data) {
  const HtmlHelpRoutine engine = FindHtmlHelp();
  const bool shows = command < kInitialize && file.size() > 1;
  if (engine == nullptr || (shows && (IsHelpBook(file) || IsMissing(machine_, file))))
    return own_.HtmlHelp(window, file, command, data);
  const std::string name = NameForEngine(machine_, file);
  if (command == kInitialize) {
    DWORD cookie = 0;
    engine(WindowOf(window), name.c_str(), command, reinterpret_cast<DWORD_PTR>(&cookie));
    data = cookie;
  } else {
    engine(WindowOf(window), name.c_str(), command, data);
  }
  // Its own window may be open, too.
  if (command == kCloseAll) own_.HtmlHelp(window, file, command, data);
}

void HelpFiles::WinHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                        std::uint32_t data) {
  if (IsHelpBook(file) || (!file.empty() && IsMissing(machine_, file)))
    return own_.WinHelp(window, file, command, data);
  WinHelpA(WindowOf(window), NameForEngine(machine_, file).c_str(), command, data);
}

}  // namespace logbook
