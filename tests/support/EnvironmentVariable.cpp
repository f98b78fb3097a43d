// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/EnvironmentVariable.h"

#include <cstdlib>

namespace logbook::test {

EnvironmentVariable::EnvironmentVariable(const char* name, const char* value) : name_(name) {
  if (const char* old = std::getenv(name)) old_ = old;
  Set(value);
}

EnvironmentVariable::~EnvironmentVariable() {
  Set(old_ ? old_->c_str() : nullptr);
}

}  // namespace logbook::test
