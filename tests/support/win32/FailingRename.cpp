// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "archive/FailingRename.h"

#include "support/win32/SkipCase.h"

namespace logbook::test {

FailingRename::FailingRename() {
  SkipCase("the system's calls cannot be made to fail");
}

FailingRename::~FailingRename() = default;

}  // namespace logbook::test
