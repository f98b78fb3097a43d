// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A program that a test starts. It and all that it starts end with the object, and with the test
// program if that is killed.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Waiting.h"

namespace logbook::e2e {

// Changes to this process's own environment; nothing: the variable is not set.
using Environment = std::map<std::string, std::optional<std::string>>;

class ChildProcess {
 public:
  // Starts a program, found along PATH. Its standard output and error go to the file. Raises
  // std::runtime_error if it cannot be started.
  ChildProcess(const std::vector<std::string>& command, const Environment& environment,
               const std::string& output_file);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  int Id() const { return id_; }
  bool Runs();
  // The exit status, 128 and its number for a signal; raises TimeOut if it does not end.
  int WaitForEnd(std::chrono::milliseconds limit = kLimit);
  // What it has written so far.
  std::string Output() const;
  // Sends a signal to the program alone.
  void Signal(int number) const;

 private:
  std::string name_;
  std::string output_file_;
  int id_ = -1;
  std::optional<int> status_;
};

struct CommandResult {
  int status = 0;
  std::string output;  // standard output and error
};

// Runs a program to its end.
CommandResult RunCommand(const std::vector<std::string>& command, const Environment& environment,
                         const std::string& output_file);

// True if a program of that name is found along PATH.
bool ProgramExists(const std::string& name);

}  // namespace logbook::e2e
