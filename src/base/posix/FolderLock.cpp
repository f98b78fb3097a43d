// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/posix/FolderLock.h"

#include <signal.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>

#ifndef sigev_notify_thread_id  // older C libraries have the field, but no name for it
#define sigev_notify_thread_id _sigev_un._tid
#endif

namespace logbook::posix {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::minutes kPause(1);

timespec TimeSpec(std::chrono::milliseconds time) {
  return {.tv_sec = time.count() / 1000, .tv_nsec = time.count() % 1000 * 1000000};
}

// Interrupts the calls in which this thread waits, from a moment on and then again and again until
// the object goes, so that none is missed that begins a little later. Looking at the lock from time
// to time instead would not do: between two busy writers no look ever finds it free.
class Interruption {
 public:
  explicit Interruption(std::chrono::milliseconds after) {
    static const bool handled = SetHandler();
    sigevent event = {};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = Signal();
    event.sigev_notify_thread_id = gettid();
    made_ = handled && timer_create(CLOCK_MONOTONIC, &event, &timer_) == 0;
    const itimerspec times = {.it_interval = TimeSpec(kAgain), .it_value = TimeSpec(after)};
    if (made_) timer_settime(timer_, 0, &times, nullptr);
  }
  ~Interruption() {
    if (made_) timer_delete(timer_);
  }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  bool WillCome() const { return made_; }

 private:
  static constexpr std::chrono::milliseconds kAgain{20};

  static int Signal() { return SIGRTMIN + 1; }
  static bool SetHandler() {
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    return sigaction(Signal(), &action, nullptr) == 0;
  }

  timer_t timer_ = {};
  bool made_ = false;
};

// The end of the pause after a wait in vain: the lock's holder costs the program its two seconds
// once and not at every file.
steady_clock::time_point& EndOfPause() {
  static steady_clock::time_point end;
  return end;
}

}  // namespace

bool LockFolder(const Descriptor& folder) {
  if (flock(folder.Number(), LOCK_EX | LOCK_NB) == 0) return true;
  const auto begin = steady_clock::now();
  if (errno != EWOULDBLOCK || begin < EndOfPause()) return false;
  const Interruption interruption(kLongestLockWait);
  while (interruption.WillCome() && steady_clock::now() - begin < kLongestLockWait) {
    if (flock(folder.Number(), LOCK_EX) == 0) return true;
    if (errno != EINTR) return false;
  }
  EndOfPause() = steady_clock::now() + kPause;
  return false;
}

}  // namespace logbook::posix
