// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The upload package of a log: the zip of its folder, lying beside the folder in LogRoot. The
// format is described in docs/file-formats.md.
#pragma once

#include <cstdint>
#include <string>

#include "state/AppState.h"

namespace logbook {

// Makes the package of the log in this folder, given with or without trailing backslash: the
// folder's path and ".qkvzip", which goes to `package`. A package of that name is replaced.
// Returns the result of arZip, 0 on success. Raises nothing.
std::int16_t ZipLogFolder(const AppState& state, const std::string& log_folder,
                          std::string& package);

}  // namespace logbook
