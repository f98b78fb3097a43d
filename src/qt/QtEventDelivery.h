// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Delivery of the toolkit's events from inside a wait, without spinning.
#pragma once

#include <chrono>

#include "state/Services.h"

namespace logbook {

class QtEventDelivery : public EventDelivery {
 public:
  // Longest sleep of one delivery, and the time that one poll of a tight loop stands for.
  static constexpr std::chrono::milliseconds kLongestSleep{50};
  static constexpr std::chrono::microseconds kPoll{10};

  // Delivers what is pending; if nothing is, sleeps in the event loop until an event comes. The
  // result is the time it took, kLongestSleep at most, in polls: a modal window that a delivered
  // event opened does not count. May be entered again from an event that it delivers.
  int Deliver() override;
};

}  // namespace logbook
