// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The names in a folder, one after the other, however many there are. Used inside this folder only.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace logbook {

// Takes a name that the folder holds, in UTF-8, and a question that may cost a call of the system:
// whether it is a folder's. A link is what it leads to.
using NameTaker =
    std::function<void(std::string_view name, const std::function<bool()>& is_folder)>;

// Gives all names but "." and "..", in no order, as the disk gives them. Raises 76 if the folder is
// missing or is none, 70, 57.
void ForEachName(const std::string& native_folder, const NameTaker& take);

}  // namespace logbook
