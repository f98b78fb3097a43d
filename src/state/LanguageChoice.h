// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Which language a run speaks. The profile "language.cfg" beside the program names it, as key "Use"
// of section "Language" (docs/languages.md). Nothing of the user's session is asked: two people at
// one workstation write the same words into its lists and reports.
#pragma once

#include <string>
#include <string_view>

#include "base/Machine.h"

namespace logbook {

inline constexpr char kLanguageFile[] = "language.cfg";

// Chooses the language that the profile in this folder (a path text) names, or `built_in` where it
// names none that there is. A language whose words the machine's code page cannot hold is passed
// over: files would be full of question marks. English is left in the end. Raises nothing.
void TakeLanguage(const Machine& machine, const std::string& app_path, std::string_view built_in);

}  // namespace logbook
