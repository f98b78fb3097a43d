// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "win32/Program.h"

#include <filesystem>
#include <stdexcept>

#include "base/win32/System.h"

namespace logbook::windows_test {

Program::Program(const std::string& program, const std::string& arguments,
                 const std::string& said) {
  std::wstring line =
      win32::Wide("\"" + program + "\"" + (arguments.empty() ? "" : " " + arguments));
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  HANDLE out = nullptr;
  if (!said.empty()) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    out = CreateFileA(said.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS,
                      FILE_ATTRIBUTE_NORMAL, nullptr);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = out;
  }
  const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, out != nullptr, 0,
                                      nullptr, nullptr, &start, &process_);
  if (out != nullptr) CloseHandle(out);
  if (!started) throw std::runtime_error("cannot start " + program);
}

Program::~Program() {
  if (Runs()) TerminateProcess(process_.hProcess, 99);
  WaitForSingleObject(process_.hProcess, INFINITE);
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

bool Program::Runs() const {
  return WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

DWORD Program::Status() const {
  DWORD status = 0;
  GetExitCodeProcess(process_.hProcess, &status);
  return status;
}

DWORD Program::WaitForEnd() const {
  WaitForSingleObject(process_.hProcess, INFINITE);
  return Status();
}

std::string BesideThisProgram(const std::string& name) {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, sizeof path);
  return (std::filesystem::path(path).parent_path() / name).string();
}

}  // namespace logbook::windows_test
