// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/EndSignal.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace logbook {
namespace {

// How a child process ends that is asked for its end while it holds the signal back.
int EndOfChild(int signal_number, bool release) {
  const pid_t child = fork();
  if (child == 0) {
    signal(signal_number, SIG_DFL);  // a shell lets what it runs in the background ignore it
    const EndSignal end;
    pollfd asked = {.fd = end.Descriptor(), .events = POLLIN, .revents = 0};
    if (poll(&asked, 1, 0) != 0) _exit(2);
    raise(signal_number);
    if (poll(&asked, 1, 0) != 1) _exit(3);
    if (release) EndSignal::Release();
    _exit(0);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child ? status : -1;
}

TEST(EndSignalTest, AnEndThatIsAskedForIsToldAndHeldBackUntilTheRelease) {
  for (const int signal_number : {SIGTERM, SIGINT}) {
    const int held = EndOfChild(signal_number, false);
    EXPECT_TRUE(WIFEXITED(held) && WEXITSTATUS(held) == 0);
    const int released = EndOfChild(signal_number, true);
    EXPECT_TRUE(WIFSIGNALED(released) && WTERMSIG(released) == signal_number);
  }
}

}  // namespace
}  // namespace logbook
