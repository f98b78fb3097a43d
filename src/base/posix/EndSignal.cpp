// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "base/EndSignal.h"

#include <pthread.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace logbook {
namespace {

sigset_t EndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

}  // namespace

EndSignal::EndSignal() {
  const sigset_t signals = EndSignals();
  if (pthread_sigmask(SIG_BLOCK, &signals, nullptr) != 0) return;
  descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor_ < 0) Release();
}

EndSignal::~EndSignal() {
  if (descriptor_ >= 0) close(descriptor_);
}

void EndSignal::Release() {
  const sigset_t signals = EndSignals();
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

}  // namespace logbook
