// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// From the system's error numbers to the program's, for the files of this folder.
#pragma once

#include <string>

namespace logbook::posix {

// Raises the run-time error for a failed call on a file; `error` is errno. A missing file is 53,
// or 76 if its parent folder is missing; a folder or a taken name is 75; a refusal 70; no room 61;
// no memory 7; anything else 57.
[[noreturn]] void RaiseFileError(int error, const std::string& native_path);

// As above for a call on a folder: a missing folder or parent is 76, a folder that is not empty or
// no folder is 75.
[[noreturn]] void RaiseFolderError(int error);

// As above for reading what is open: no memory is 7, anything else 57.
[[noreturn]] void RaiseReadError(int error);

// True if the path leads to a folder, through links too.
bool IsFolder(const std::string& native_path);

// The folder part of a native path: "/" for "/a", "." for "a".
std::string ParentOf(const std::string& native_path);

}  // namespace logbook::posix
