// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Where the verbs write what is more than an answer on the terminal: a file that the user names,
// never below a root of logs, or standard output for "-".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Frame.h"

namespace logbook::cli {

// Raises UserError if the file (as typed) lies below one of the roots (native paths), one of those
// that are used unless others are named, or in the
// folder of any other log, also by way of links: nothing there is ever changed.
void RefuseBelowRoots(const Call& call, const std::string& typed,
                      const std::vector<std::string>& roots);

// Replaces the file by this text as a whole, or writes it to standard output. Raises as above and
// what WriteFile raises, with the file in the call's subject.
void WriteOutput(Call& call, const std::string& typed, std::string_view text,
                 const std::vector<std::string>& roots);

// The text of a file that people write, such as limits.ini. Raises what ReadFile raises, with the
// file in the call's subject.
std::string ReadSettingsFile(Call& call, const std::string& typed);

// The file that was typed; else the one of this name in the user's configuration if it is there;
// else nothing.
std::string SettingsFileOr(const Call& call, const std::string& typed, std::string_view name);

}  // namespace logbook::cli
