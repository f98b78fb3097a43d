// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The names of files in the making (docs/file-formats.md).
#pragma once

#include <string_view>

namespace logbook {

// The name that a file has while its new contents are written. The writer's number follows, and
// perhaps a hyphen and another one, where the folder's lock cannot be had or something else has the
// name. A writer that was killed may leave one behind; it is no entry of its folder for any routine
// of Files.h, and goes with the next writing there or with the folder.
inline constexpr std::string_view kTemporaryName = ".logbook-new~";

// True for exactly the names that a writer makes. What bears one and is no plain file is none of a
// writer's.
bool IsTemporaryName(std::string_view name);

}  // namespace logbook
