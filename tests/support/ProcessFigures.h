// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the system counts of the test's own process. Differences of two readings are figures of what
// ran between them.
#pragma once

#include <cstdint>

namespace logbook::test {

// Bytes that the process has read from files so far, cached by the system or not.
std::int64_t BytesRead();

// The most memory that the process has had at one time, in KiB.
long PeakMemory();

}  // namespace logbook::test
