// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files that other users of the machine have no business in, by native paths.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// Replaces the file by these bytes, or makes it, readable by its owner alone: readers see the old
// file or the new one, never a part, also after a crash. It grows under its name with a point and
// six letters or digits behind; what crashes have left of such files beside it, for files that end
// as this one does and begin with the same bytes up to the first blank, is taken away. Raises what
// writing a file raises (Files.h); the old file is then unchanged.
void ReplacePrivateFile(const std::string& path, std::string_view bytes);

// True if every user of the machine may read the file. False on any failure.
bool EverybodyMayRead(const std::string& path);

}  // namespace logbook
