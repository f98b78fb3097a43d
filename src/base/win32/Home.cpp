// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/Environment.h"
#include "base/Machine.h"

namespace logbook {

// Only who sets the variable has drives and a registry of his own; everybody else has the real
// ones, and so no home.
std::string DefaultHome() {
  return EnvironmentText("LOGBOOK_HOME");
}

}  // namespace logbook
