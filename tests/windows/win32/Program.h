// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A program that runs beside the test.
#pragma once

#include <string>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace logbook::windows_test {

class Program {
 public:
  // `arguments` as they stand behind the program's name, UTF-8. What it says goes into the file
  // `said`, if one is given.
  Program(const std::string& program, const std::string& arguments, const std::string& said = "");
  // Ends it if it still runs.
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  bool Runs() const;
  DWORD Status() const;
  // Its status, however long it takes.
  DWORD WaitForEnd() const;
  DWORD Id() const { return process_.dwProcessId; }

 private:
  PROCESS_INFORMATION process_ = {};
};

// The file of this name in the folder of this test program.
std::string BesideThisProgram(const std::string& name);

}  // namespace logbook::windows_test
