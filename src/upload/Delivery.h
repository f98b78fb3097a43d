// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The agent's work: from the outbox to the content server (docs/content-server.md).
#pragma once

#include <chrono>
#include <string>

#include "base/Machine.h"
#include "upload/ContentStore.h"
#include "upload/Outbox.h"

namespace logbook {

// Brings one submission to the server: each file under a temporary name, read back and compared,
// moved into place; the descriptor last of all; then it is marked as delivered in the outbox, for
// the next clearing. What has arrived already is not sent again. Raises DeliveryError; the outbox
// then still holds everything.
void Deliver(Outbox& outbox, ContentStore& store, const std::string& submission);

enum class Rounds { kUntilEmpty, kOne };
enum class DrainResult {
  kEmpty,       // nothing waits
  kWaiting,     // kOne: the round has left something
  kOtherAgent,  // another agent is at work
  kDisabled,    // the settings name no server
};

// Delivers what the outbox holds. After a round with a failure it waits, longer each time until
// something arrives, and tries at once when something new comes. The settings are read from the
// file (a path text) before each round; while they stay and nothing fails, all rounds go through
// one store. Notes in the outbox tell of the failures. Raises
// RunTimeError if the outbox itself cannot be read or locked.
DrainResult Drain(const Machine& machine, const std::string& area, const std::string& settings_file,
                  Rounds rounds);

// The pause after a round that failed: the first one (after a `last` of 0) by the settings, then
// twice the last one, up to the longest.
std::chrono::milliseconds NextPause(std::chrono::milliseconds last, const ServerSettings& settings);

}  // namespace logbook
