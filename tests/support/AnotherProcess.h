// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What changes the process that it runs in, tried in another one.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace logbook::test {

// Does this in a process of its own, whose failed expectations fail the test, too.
template <typename Action>
void InAnotherProcess(const Action& action) {
  const pid_t child = fork();
  if (child == 0) {
    action();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

}  // namespace logbook::test
