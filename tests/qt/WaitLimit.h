// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// How long a test waits for a condition before it fails.
#pragma once

namespace logbook::test {

// Milliseconds. Generous: the machine may be slow and shared.
inline constexpr int kWaitLimit = 60000;

}  // namespace logbook::test
