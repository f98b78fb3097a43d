// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/EnvironmentVariable.h"

#include <cstdlib>

#include "base/win32/System.h"

namespace logbook::test {

// The library keeps a copy of the system's variables; both are to say the same. The system's is set
// by its own call as well, since the library's can set none to an empty text.
void EnvironmentVariable::Set(const char* value) const {
  _putenv((std::string(name_) + "=" + (value == nullptr ? "" : value)).c_str());
  SetEnvironmentVariableW(win32::Wide(name_).c_str(),
                          value == nullptr ? nullptr : win32::Wide(value).c_str());
}

}  // namespace logbook::test
