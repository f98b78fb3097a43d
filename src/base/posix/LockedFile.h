// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files that get their name when they are complete. Each is locked as long as its writer lives, so
// that the next writer can tell what a crash has left from what is at work, and takes it away.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "base/posix/Descriptor.h"

namespace logbook::posix {

// Makes a file of a name that is free, open for reading and writing, and locks it; on a disk that
// knows no locks it goes without. Not open on failure, with errno set: EEXIST if the name is taken.
Descriptor MakeLockedFile(const std::string& path, mode_t mode);

// Removes what killed writers have left in a folder: the files of this user whose names
// `is_working_name` takes, that nobody has locked, and that begin with these bytes, or with as many
// of them as they have, or with NULs, as a power cut may leave. Failures are ignored.
void RemoveLeftFiles(const std::string& folder,
                     const std::function<bool(std::string_view)>& is_working_name,
                     std::string_view beginning);

}  // namespace logbook::posix
