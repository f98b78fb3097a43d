// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// From the system's error numbers to errno's, by which the rest of the program tells failures
// apart, and from those to the program's.
#pragma once

#include <string>

namespace logbook::win32 {

// errno's number for one of the system's; EIO for those that nobody here tells apart.
int ErrnoOf(unsigned long error);

// The same for the calling thread's last failure.
int LastErrno();

// Raises the run-time error for a failed call on a file; `error` is errno's number. A missing file
// is 53, or 76 if its parent folder is missing; a folder or a taken name is 75; a refusal 70; no
// room 61;
// no memory 7; anything else 57.
[[noreturn]] void RaiseFileError(int error, const std::string& native_path);

// As above for a call on a folder: a missing folder or parent is 76, a folder that is not empty or
// no folder is 75.
[[noreturn]] void RaiseFolderError(int error);

// The folder part of a native path: "C:/" for "C:/a", "." for "a".
std::string ParentOf(const std::string& native_path);

// The last component of a native path.
std::string NameOf(const std::string& native_path);

}  // namespace logbook::win32
