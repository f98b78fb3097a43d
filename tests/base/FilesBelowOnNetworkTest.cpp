// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How the system is asked for stamps of files that another machine may change.

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <vector>

#include "base/FilesBelow.h"
#include "support/TestMachine.h"

namespace {
std::vector<int> flags_of_looks;
}  // namespace

extern "C" int statx(int folder, const char* path, int flags, unsigned mask,
                     struct statx* status) noexcept {
  using Routine = int(int, const char*, int, unsigned, struct statx*);
  static auto* const next = reinterpret_cast<Routine*>(dlsym(RTLD_NEXT, "statx"));
  flags_of_looks.push_back(flags);
  return next(folder, path, flags, mask, status);
}

namespace logbook {
namespace {

TEST(FilesBelowOnNetworkTest, ALookAsksTheServerOfTheFile) {
  test::TestMachine machine;
  machine.Put("C:\\Logs\\log\\a.txt", "text");
  FilesBelow files(machine, "C:\\Logs\\");
  FileStamp stamp;
  flags_of_looks.clear();
  ASSERT_EQ(files.Look("log", "a.txt", stamp), FilesBelow::Found::kFile);
  ASSERT_EQ(flags_of_looks.size(), 1u);
  EXPECT_EQ(flags_of_looks[0] & AT_STATX_SYNC_TYPE, AT_STATX_FORCE_SYNC);
  EXPECT_EQ(stamp, StampOf(machine, "C:\\Logs\\log\\a.txt"));
}

}  // namespace
}  // namespace logbook
