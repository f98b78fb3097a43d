// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The zone of local times, and the times of files, for tests of files that hold them.
#pragma once

#include <ctime>
#include <string>

namespace logbook::test {

// From here on local times of this process are those of UTC.
void UseUtc();

// Gives a file or folder (native path) this time of its last change.
void SetModified(const std::string& path, std::time_t time);

}  // namespace logbook::test
