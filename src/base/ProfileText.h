// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The text of a profile file, in memory: looking a value up and setting one. The format is
// described in docs/file-formats.md. All names, values and texts here are bytes in the code page.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/CodePage.h"

namespace logbook {

// The value of a key, without blanks and the pair of equal quotes around it; nothing if there is
// no such section or key. Of two equal sections or keys the first counts.
std::optional<std::string> FindProfileValue(const CodePage& page, std::string_view file,
                                            std::string_view section, std::string_view key);

// The same for several keys of a section in one walk over the file: a value or nothing for each
// key, in their order. The views point into the file's bytes.
std::vector<std::optional<std::string_view>> FindProfileValues(
    const CodePage& page, std::string_view file, std::string_view section,
    std::span<const std::string_view> keys);

// The file with the value set: in the place of the old value, else as a new line behind the last
// line of its section that is not blank, else in a new section at the end. All other bytes stay.
std::string SetProfileValue(const CodePage& page, std::string_view file, std::string_view section,
                            std::string_view key, std::string_view value);

}  // namespace logbook
