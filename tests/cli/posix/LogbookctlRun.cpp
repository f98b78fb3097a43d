// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "cli/LogbookctlRun.h"

#include <cstdlib>

namespace logbook::test {

Outcome RunLogbookctl(const std::string& home, const std::string& arguments,
                      const std::string& variables) {
  const TestMachine scratch;
  const std::string base = scratch.home() + "/";
  const std::string command = "LOGBOOK_HOME=" + Quoted(home) + " " + variables + " " +
                              Quoted(LOGBOOKCTL) + " " + arguments + " >" + base + "out 2>" + base +
                              "err </dev/null; echo $? >" + base + "status";
  Outcome outcome;
  if (std::system(command.c_str()) != 0) ADD_FAILURE() << command;
  outcome.out = Read(base + "out");
  outcome.err = Read(base + "err");
  outcome.status = std::stoi(Read(base + "status"));
  return outcome;
}

}  // namespace logbook::test
