// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One run of the host: takes its place on the session bus, starts the logbook if it is to, and ends
// with it, with the bus or at the system's wish.
#pragma once

#include "base/EndSignal.h"
#include "host/HostOptions.h"

namespace logbook::host {

// Returns the exit status: that of the logbook if the host started it (128 and the signal's number
// if a signal ended it, 127 if it could not be started), else 0, also at the system's wish; 1 if
// there is no bus, the name is taken or the bus goes away. Needs a QCoreApplication.
int RunHost(const HostOptions& options, const EndSignal& end_signal);

}  // namespace logbook::host
