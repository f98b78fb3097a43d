// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Programs of this system, by native paths.
#pragma once

#include <string>
#include <vector>

namespace logbook {

// The folder that the running program lies in, whatever links lead there; empty if nobody can tell.
std::string OwnProgramFolder();

// Starts a program on its own, detached from this process and its terminal. False if it cannot be
// started.
bool StartDetached(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace logbook
