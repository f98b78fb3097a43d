// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What `logbookctl diagnose` tells of this system.

#include <gmock/gmock.h>

#include "cli/LogbookctlRun.h"

namespace logbook::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

TEST(DiagnoseOnWindows, TellsTheSystemAndWritesATildeForTheUsersFolder) {
  const TestMachine user;
  const Outcome told =
      RunLogbookctl(user.home() + "/work", "diagnose", "HOME=" + Quoted(user.home() + "/"));
  EXPECT_THAT(told.out, AllOf(HasSubstr("  System: "), HasSubstr(", build "),
                              HasSubstr("  Code page: 1252\n"), HasSubstr("  Locale: en-US\n"),
                              HasSubstr("  LOGBOOK_HOME: ~/work\n"), Not(HasSubstr(user.home()))));
}

}  // namespace
}  // namespace logbook::test
