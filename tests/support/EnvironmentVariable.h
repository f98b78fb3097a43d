// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A variable of the environment with a value for a test, or without one.
#pragma once

#include <optional>
#include <string>

namespace logbook::test {

// Sets the variable, or removes it where there is no value, until the object ends; then it is as it
// was.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const char* value);
  ~EnvironmentVariable();
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void Set(const char* value) const;

  const char* name_;
  std::optional<std::string> old_;
};

}  // namespace logbook::test
