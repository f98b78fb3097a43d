// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The registry and the code page of the system itself, for a machine without a home of its own.
// Used inside this folder only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace logbook {

// The text value of a key below the system's local-machine root; empty if it is missing or no text,
// and on a system that has no registry. Both views that a 64-bit system has are looked at, the one
// for 64-bit programs first. Raises nothing.
std::optional<std::string> ReadSystemRegistry(std::string_view key, std::string_view name);

// The number of the system's ANSI code page; nothing on a system that has none.
std::optional<int> SystemCodePage();

}  // namespace logbook
