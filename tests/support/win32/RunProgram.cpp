// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Windows has no shell of this kind and none of the judges. Wine starts programs of the system that
// it runs on, so there they judge, too: a script in a file, since Wine gives no handle of such a
// program and no channels; its end is the appearance of a file.

#include "support/RunProgram.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "base/win32/System.h"
#include "support/win32/SkipCase.h"

namespace fs = std::filesystem;

namespace logbook::test {
namespace {

using UnixNameCall = char*(CDECL*)(const wchar_t*);

UnixNameCall FindUnixNameCall() {
  const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
  return reinterpret_cast<UnixNameCall>(
      reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
}

// The name by which the system below Wine knows a file, which need not exist.
std::string UnixName(const std::string& path) {
  const UnixNameCall call = FindUnixNameCall();
  char* const name = call(fs::path(path).make_preferred().wstring().c_str());
  if (name == nullptr) return path;
  std::string copy = name;
  HeapFree(GetProcessHeap(), 0, name);
  return copy;
}

bool IsNativePath(const std::string& text) {
  return text.size() > 2 && std::isalpha(static_cast<unsigned char>(text[0])) != 0 &&
         text[1] == ':' && (text[2] == '/' || text[2] == '\\');
}

std::string TextOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void Start(const fs::path& script) {
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  std::wstring line = L"Z:\\bin\\sh " + win32::Wide(UnixName(script.generic_string()));
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process))
    SkipCase("no shell can be started");
  win32::Handle(process.hProcess).Close();
  win32::Handle(process.hThread).Close();
}

fs::path MakeFolder() {
  std::random_device random;
  for (;;) {
    fs::path folder = fs::temp_directory_path() / ("logbook-run-" + std::to_string(random()));
    if (fs::create_directory(folder)) return folder;
  }
}

}  // namespace

ProgramResult RunProgram(const std::string& command) {
  if (FindUnixNameCall() == nullptr) SkipCase("the programs that judge are not there");
  const fs::path folder = MakeFolder();
  std::ofstream(folder / "script", std::ios::binary)
      << "cd " << Quoted(folder.generic_string()) << "\n( cd /; " << command
      << "\n) >output 2>&1 </dev/null\necho $? >part && mv part status\n";
  Start(folder / "script");
  while (!fs::exists(folder / "status")) Sleep(5);  // the runner of the tests ends one that hangs
  ProgramResult result = {std::stoi(TextOf(folder / "status")), TextOf(folder / "output")};
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  return result;
}

bool HasProgram(const std::string& name) {
  return FindUnixNameCall() != nullptr && RunProgram("command -v " + Quoted(name)).status == 0;
}

std::string PythonWith(const std::string& module) {
  if (FindUnixNameCall() == nullptr) return {};
  for (const char* python : {"python3", "/usr/bin/python3"}) {
    if (RunProgram(std::string(python) + " -c " + Quoted("import " + module)).status == 0)
      return python;
  }
  return {};
}

// A native path becomes the one that programs below Wine know.
std::string Quoted(const std::string& text) {
  const bool path = FindUnixNameCall() != nullptr && IsNativePath(text);
  std::string quoted = "'";
  for (const char byte : path ? UnixName(text) : text)
    quoted += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
  return quoted + "'";
}

}  // namespace logbook::test
