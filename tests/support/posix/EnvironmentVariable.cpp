// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/EnvironmentVariable.h"

#include <cstdlib>

namespace logbook::test {

void EnvironmentVariable::Set(const char* value) const {
  if (value == nullptr) {
    unsetenv(name_);
  } else {
    setenv(name_, value, 1);
  }
}

}  // namespace logbook::test
