// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// For variables that somebody may have forgotten to set.
#pragma once

namespace logbook::test {

// Leaves no byte at 0 where the next call has its variables.
[[gnu::noinline]] inline void FillStack() {
  volatile unsigned char bytes[8192];
  for (auto& byte : bytes) byte = 0xFF;
}

}  // namespace logbook::test
