// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The lock by which the writers of a folder wait for each other.
#pragma once

#include <chrono>

#include "base/posix/Descriptor.h"

namespace logbook::posix {

inline constexpr std::chrono::milliseconds kLongestLockWait(1900);

// Waits for the lock on an opened folder, which it then holds until it is closed. False if there is
// none to be had: the disk knows no locks, or somebody holds it for longer than a writer does. Who
// may read a folder can hold its lock for ever, so the wait ends before two seconds are over, and
// for a minute after such a wait in vain nothing is waited for.
bool LockFolder(const Descriptor& folder);

}  // namespace logbook::posix
