// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Work on an opened folder and on names in it, for all that deletes or replaces: whatever becomes
// of the folder's path meanwhile, and wherever a link in its place leads, nothing else is touched.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/Machine.h"
#include "base/posix/Descriptor.h"

namespace logbook::posix {

// A name and the native path of the folder that it stands in.
struct NameInFolder {
  std::string folder;
  std::string name;
};

// The last component of a path text, exactly as it is given, and the folder above it, which is
// looked up as every path is. Raises nothing.
NameInFolder ExactName(const Machine& machine, std::string_view path);

// The folder opened, by its path; a link is followed. One that we may not list is opened too: names
// in it can be used, but its list and its lock are refused. Raises 76 if it is missing or is no
// folder, 70, 57.
Descriptor OpenFolder(const std::string& native_folder);

// The folder of that name in an opened one. Raises 75 for a link and for what is no folder, 76 if
// it is missing, 70, 57.
Descriptor OpenFolderIn(const Descriptor& folder, const std::string& name);

// All names but "." and "..", in no order. Raises 70, 57.
std::vector<std::string> AllNamesIn(const Descriptor& folder);

}  // namespace logbook::posix
