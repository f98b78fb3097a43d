// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The names under which private files are made (PrivateFile.h). Used inside this folder only.
#pragma once

#include <string>
#include <string_view>

namespace logbook {

// The path with a point and six letters or digits behind it, other ones at each call.
std::string NewPrivateName(const std::string& path);

// True for a name that a writer of this file may have made, or of one with the same extension.
bool IsPrivateName(std::string_view name, std::string_view file);

}  // namespace logbook
