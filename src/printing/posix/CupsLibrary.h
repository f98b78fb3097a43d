// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The print system's library, loaded when the print system is first asked for anything. The
// routines are called by their names in its header.
#pragma once

namespace logbook::posix {

// True if the machine has the library; loads it. Without it a call of its routines raises
// std::runtime_error.
bool CupsLibraryIsThere();

}  // namespace logbook::posix
