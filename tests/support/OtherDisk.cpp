// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/OtherDisk.h"

#include <dlfcn.h>
#include <sys/vfs.h>

namespace logbook::test {

namespace {
long kind = 0;  // 0: as it is
}  // namespace

OtherDisk::OtherDisk(long number) {
  kind = number;
}

OtherDisk::~OtherDisk() {
  kind = 0;
}

}  // namespace logbook::test

extern "C" int statfs(const char* path, struct statfs* status) noexcept {
  using Routine = int(const char*, struct statfs*);
  const int result = reinterpret_cast<Routine*>(dlsym(RTLD_NEXT, "statfs"))(path, status);
  if (logbook::test::kind != 0) status->f_type = logbook::test::kind;
  return result;
}
