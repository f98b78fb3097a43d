// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The host's own way of writing: straight into the file. It gives none of the logbook's promises
// (whole files, flushed to the disk), as befits another program, and is quick enough for hundreds
// of logs.
#pragma once

#include <string_view>

#include "base/Machine.h"

namespace logbook::host {

// Makes or overwrites a file. Raises std::runtime_error with the native path.
void PutFile(const Machine& machine, std::string_view path, std::string_view bytes);

// Makes a folder and those above it; one that exists is left alone. Raises std::runtime_error.
void PutFolder(const Machine& machine, std::string_view path);

}  // namespace logbook::host
