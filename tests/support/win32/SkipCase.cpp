// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "support/win32/SkipCase.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace logbook::test {
namespace {

void Record(const std::string& why) {
  GTEST_SKIP() << why;
}

[[noreturn]] void SkipForLinks() {
  SkipCase("not every user may make links");
}

}  // namespace

void SkipCase(const std::string& why) {
  Record(why);
  throw testing::AssertionException(
      testing::TestPartResult(testing::TestPartResult::kSkip, __FILE__, __LINE__, why.c_str()));
}

}  // namespace logbook::test

// The linker puts these in the place of std::filesystem's (tests/support/CMakeLists.txt), which
// fail here.
namespace fs = std::filesystem;
extern "C" {
void __wrap__ZNSt10filesystem14create_symlinkERKNS_7__cxx114pathES3_(const fs::path&,
                                                                     const fs::path&) {
  logbook::test::SkipForLinks();
}
void __wrap__ZNSt10filesystem24create_directory_symlinkERKNS_7__cxx114pathES3_(const fs::path&,
                                                                               const fs::path&) {
  logbook::test::SkipForLinks();
}
}
