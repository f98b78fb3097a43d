// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What `ecm-agent --status` tells an administrator (docs/content-server.md).
#pragma once

#include <string>

#include "base/Machine.h"

namespace logbook {

// True if a submission waits in the outbox of this area (a native path) or has not been taken over
// to the end. Raises RunTimeError if the outbox cannot be read.
bool SomethingWaits(const std::string& area);

// True if the machine's home is a folder. Without it there is no outbox to look into.
bool HomeExists(const Machine& machine);

// The server, the outbox that was looked into, whether an agent is at work, how often each
// submission was tried and why it is still here, and what lies staged and was not handed over.
// `settings_file` is a path text. Raises as above.
std::string StatusText(const Machine& machine, const std::string& area,
                       const std::string& settings_file);

}  // namespace logbook
