// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Names of files for libraries that open them by themselves, and know plain texts alone.
#pragma once

#include <string>

namespace logbook {

// A native path (UTF-8) of a file that exists, in the bytes by which such a library finds it. Where
// names are UTF-16 these are of the system's code page: the path itself if it has nothing but
// letters of that, else the short form that the disk may have beside it. Empty if there is none.
std::string PathForLibraries(const std::string& native_path);

}  // namespace logbook
