// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "VanishingFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <utility>

namespace {
bool next_file_vanishes = false;
}  // namespace

namespace logbook::test {

void LetTheNextRenamedFileVanish() {
  next_file_vanishes = true;
}

bool AFileIsToVanish() {
  return next_file_vanishes;
}

}  // namespace logbook::test

extern "C" int rename(const char* from, const char* to) noexcept {
  if (std::exchange(next_file_vanishes, false)) return unlink(from);
  return renameat(AT_FDCWD, from, AT_FDCWD, to);
}
