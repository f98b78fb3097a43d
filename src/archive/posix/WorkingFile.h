// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The working file of a zip file: ".<name>.<number>.part" beside it, and with a "2" behind while it
// is written anew as a whole.
#pragma once

#include <string>

#include "base/posix/Descriptor.h"

namespace logbook {

// Takes away what killed writers have left in the folder of this zip file, and makes a working
// file for it, locked while it is open; its native path goes to `path`. Not open on failure, with
// errno set.
posix::Descriptor MakeWorkingFile(const std::string& zip_file, std::string& path);

}  // namespace logbook
