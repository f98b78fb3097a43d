// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// From errno's numbers to the program's, for every system. Used inside this folder only.
#pragma once

#include "base/RunTimeError.h"

namespace logbook {

// The run-time error for a failed call on a file; `error` is errno's number. A missing file is 53,
// or 76 if its parent folder is missing; a folder or a taken name is 75; a refusal 70; no room 61;
// no memory 7; anything else 57.
RunTimeError FileFailure(int error, bool parent_is_folder);

// As above for a call on a folder: a missing folder or parent is 76, a folder that is not empty or
// no folder is 75.
RunTimeError FolderFailure(int error);

}  // namespace logbook
