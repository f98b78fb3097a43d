// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "Waiting.h"

#include <QCoreApplication>
#include <thread>

namespace logbook::e2e {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause{10};

bool ComesBefore(Clock::time_point end, const std::function<bool()>& condition) {
  while (!condition()) {
    if (Clock::now() >= end) return false;
    QCoreApplication::processEvents();
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

}  // namespace

void WaitFor(const std::string& what, const std::function<bool()>& condition,
             std::chrono::milliseconds limit) {
  if (!ComesBefore(Clock::now() + limit, condition)) throw TimeOut(what);
}

bool NeverHolds(const std::function<bool()>& condition, std::chrono::milliseconds watched) {
  return !ComesBefore(Clock::now() + watched, condition);
}

}  // namespace logbook::e2e
