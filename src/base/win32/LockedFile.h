// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files that get their name when they are complete. As long as its writer lives, nobody else can
// write or delete one, so that the next writer can tell what a crash has left from what is at work,
// and takes it away.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/win32/System.h"

namespace logbook::win32 {

// Makes a file of a name that is free, open for reading and writing, with these rights or, if null,
// those of its folder. Others may read it meanwhile. Not open, with the last error set, on failure.
Handle MakeLockedFile(const std::string& path, SECURITY_ATTRIBUTES* rights);

// Removes what killed writers have left in a folder: the files whose names `is_working_name` takes,
// that nobody has open, and that begin with these bytes, or with as many of them as they have, or
// with NULs, as a power cut may leave. Failures are ignored.
void RemoveLeftFiles(const std::string& folder,
                     const std::function<bool(std::string_view)>& is_working_name,
                     std::string_view beginning);

}  // namespace logbook::win32
