// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/RunProgram.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace logbook::test {

ProgramResult RunProgram(const std::string& command) {
  ProgramResult result;
  FILE* pipe = popen(("( " + command + " ) 2>&1").c_str(), "r");
  if (pipe == nullptr) return result;
  std::array<char, 4096> buffer;
  while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe))
    result.output.append(buffer.data(), count);
  const int status = pclose(pipe);
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  return result;
}

bool HasProgram(const std::string& name) {
  return RunProgram("command -v " + Quoted(name)).status == 0;
}

std::string PythonWith(const std::string& module) {
  for (const char* python : {"python3", "/usr/bin/python3"}) {
    if (RunProgram(std::string(python) + " -c " + Quoted("import " + module)).status == 0) {
      return python;
    }
  }
  return {};
}

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char byte : text) quoted += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
  return quoted + "'";
}

}  // namespace logbook::test
