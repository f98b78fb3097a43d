// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Folders that other users of the machine cannot look into.
#pragma once

#include <string_view>

#include "base/Machine.h"

namespace logbook {

// Makes the folder unless it exists; its parent must. In both cases it is its owner's alone then
// (mode 0700). A new one outlasts a power cut. Raises kPermissionDenied (70) if the folder, or a
// link in its place, belongs to another user, so that nothing may be put there; kPathFileAccess
// (75) if the name is a file's; kPathNotFound (76) if the parent is missing; and what MakeFolder
// raises.
void MakePrivateFolder(const Machine& machine, std::string_view path);

// Makes file managers pass the folder over, as the hidden attribute does elsewhere: its name goes
// into the file ".hidden" of the folder above, if it is not there yet and that folder is ours.
// Does nothing on any failure.
void HideFolder(const Machine& machine, std::string_view path);

}  // namespace logbook
