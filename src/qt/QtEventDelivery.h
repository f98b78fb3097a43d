// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Delivery of the toolkit's events from inside a wait, without spinning, and painting from inside
// long work.
#pragma once

#include <chrono>

#include "state/Services.h"

namespace logbook {

class QtEventDelivery : public EventDelivery {
 public:
  // Longest sleep of one delivery, and the time that one poll of a tight loop stands for. What a
  // wait is for arrives as an event, which ends the sleep at once.
  static constexpr std::chrono::milliseconds kLongestSleep{300};
  static constexpr std::chrono::microseconds kPoll{10};

  explicit QtEventDelivery(std::chrono::milliseconds longest_sleep = kLongestSleep)
      : longest_sleep_(longest_sleep) {}

  // Delivers what is pending; if nothing is, sleeps in the event loop until an event comes. The
  // result is the time it took, the longest sleep at most, in polls: a modal window that a
  // delivered event opened does not count. May be entered again from an event that it delivers.
  int Deliver() override;

  void BeginWork() override;
  void EndWork() override;
  // Paints every window that is shown, whole: what has lain over it may have gone meanwhile.
  void Paint() override;

  // Least time between the ends and beginnings of two paintings.
  static constexpr std::chrono::milliseconds kPaintPause{100};

 private:
  const std::chrono::milliseconds longest_sleep_;
  std::chrono::steady_clock::time_point next_paint_;
};

}  // namespace logbook
