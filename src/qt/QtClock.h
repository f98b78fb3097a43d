// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The workstation's local time.
#pragma once

#include "state/Services.h"

namespace logbook {

class QtClock : public Clock {
 public:
  LocalTime Now() override;
  void Sleep(int milliseconds) override;
};

}  // namespace logbook
