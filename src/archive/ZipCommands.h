// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What the zip library may ask of a source of ours, as the set of bits that it wants to hear.
#pragma once

#include <zip.h>

#include <initializer_list>

namespace logbook {

constexpr zip_int64_t ZipCommands(std::initializer_list<zip_source_cmd_t> commands) {
  zip_int64_t set = 0;
  for (const zip_source_cmd_t command : commands) set |= ZIP_SOURCE_MAKE_COMMAND_BITMASK(command);
  return set;
}

}  // namespace logbook
