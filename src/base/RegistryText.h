// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The text of a registry file, in memory. The format is described in docs/file-formats.md.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace logbook {

// The text value of a key below HKEY_LOCAL_MACHINE after all lines of the file have been carried
// out in their order; an empty name asks for the key's default value. The file is UTF-16LE with a
// byte order mark, or UTF-8. Lines that cannot be read are passed over. Raises nothing.
std::optional<std::string> FindRegistryText(std::string_view file, std::string_view key,
                                            std::string_view name);

}  // namespace logbook
