// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "FailingRename.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>

namespace {
bool fails = false;
}  // namespace

namespace logbook::test {

FailingRename::FailingRename() {
  fails = true;
}

FailingRename::~FailingRename() {
  fails = false;
}

}  // namespace logbook::test

extern "C" int rename(const char* from, const char* to) noexcept {
  errno = EIO;
  return fails ? -1 : renameat(AT_FDCWD, from, AT_FDCWD, to);
}
