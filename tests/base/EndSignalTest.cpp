// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/EndSignal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "support/FilledStack.h"

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

// Whether a process of its own in which this holds ends as it should: with 0.
template <typename Claim>
bool HoldsInChild(Claim claim) {
  const pid_t child = fork();
  if (child == 0) _exit(claim() ? 0 : 1);
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool IsHeldBack(int signal_number) {
  sigset_t held;
  pthread_sigmask(SIG_BLOCK, nullptr, &held);
  return sigismember(&held, signal_number) == 1;
}

TEST(EndSignalTest, NoOtherSignalIsHeldBack) {
  EXPECT_TRUE(HoldsInChild([] {
    std::vector<int> before;
    for (int number = 1; number < SIGRTMAX; ++number)
      if (IsHeldBack(number)) before.push_back(number);
    test::FillStack();
    const EndSignal end;
    for (int number = 1; number < SIGRTMAX; ++number) {
      const bool is_asked_for = number == SIGTERM || number == SIGINT;
      const bool was = std::find(before.begin(), before.end(), number) != before.end();
      if (IsHeldBack(number) != (is_asked_for || was)) return false;
    }
    return true;
  }));
}

TEST(EndSignalTest, ItsDescriptorIsNotInheritedNeverWaitedForAndGoesWithIt) {
  int number = -1;
  EXPECT_TRUE(HoldsInChild([&] {
    {
      const EndSignal end;
      number = end.Descriptor();
      if ((fcntl(number, F_GETFD) & FD_CLOEXEC) == 0) return false;
      if ((fcntl(number, F_GETFL) & O_NONBLOCK) == 0) return false;
    }
    return fcntl(number, F_GETFD) < 0;
  }));
}

TEST(EndSignalTest, TheNumber0IsADescriptorAsAnyOther) {
  EXPECT_TRUE(HoldsInChild([] {
    close(0);
    {
      const EndSignal end;
      if (end.Descriptor() != 0 || !IsHeldBack(SIGTERM)) return false;
    }
    return fcntl(0, F_GETFD) < 0;
  }));
}

TEST(EndSignalTest, WithoutADescriptorTheSignalEndsTheProcessAsEver) {
  EXPECT_TRUE(HoldsInChild([] {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_NOFILE, &none);
    const EndSignal end;
    return end.Descriptor() == -1 && !IsHeldBack(SIGTERM) && !IsHeldBack(SIGINT);
  }));
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
