// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The local-machine hive of the registry, read-only. It is the text file "machine.reg" in the
// logbook's home, in the exchange format that the platform's registry editor writes (UTF-16LE
// with a byte order mark, or UTF-8 with or without one): docs/file-formats.md.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace logbook {

// The text value of a key below the local-machine root, such as key
// "SYSTEM\CurrentControlSet\Control\Nls\CodePage", name "ACP". Key and value names are compared
// without regard to case. Empty if hive, key or value is missing or the value is no text. The hive
// is read at each call. Raises nothing.
std::optional<std::string> ReadMachineRegistry(const std::string& home, std::string_view key,
                                               std::string_view name);

}  // namespace logbook
