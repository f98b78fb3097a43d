// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/CountedWrites.h"

#include "support/win32/SkipCase.h"

namespace logbook::test {

CountedWrites::CountedWrites(int, AtWrite) {
  SkipCase("the database's writes cannot be counted, and none can be made to fail");
}

CountedWrites::~CountedWrites() = default;

bool CountedWrites::Happened() {
  return false;
}

}  // namespace logbook::test
