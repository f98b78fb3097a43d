// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// There is no shell and none of the judges here: every test that asks for one is skipped.

#include "support/RunProgram.h"

namespace logbook::test {

ProgramResult RunProgram(const std::string&) {
  return {};
}

bool HasProgram(const std::string&) {
  return false;
}

std::string PythonWith(const std::string&) {
  return {};
}

std::string Quoted(const std::string& text) {
  return text;
}

}  // namespace logbook::test
