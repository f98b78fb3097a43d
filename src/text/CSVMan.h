// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Reading of profiles and splitting of fields. Callers' file formats are read through these
// routines, so their oddities are part of the contract. None shows a message.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/Machine.h"

namespace logbook {

// Number of bytes of the text (UTF-8) in the machine's code page.
std::int32_t AnsiLen(const Machine& machine, std::string_view text);

// Reads a value of a profile (docs/file-formats.md) into `value` as UTF-8: at most 511 bytes of
// the code page, up to the first NUL; `default_value` where file, section or key is missing. The
// result is AnsiLen of the value. Raises nothing.
std::int32_t GetIniString(const Machine& machine, std::string_view section, std::string_view key,
                          std::string_view default_value, std::string& value,
                          std::string_view file);

// The same for the bytes of a profile that have been read already.
std::int32_t GetIniStringFrom(const Machine& machine, std::string_view section,
                              std::string_view key, std::string_view default_value,
                              std::string& value, std::string_view profile_bytes);

// Splits a text at a delimiter into an array whose last element is never filled: an array of
// bounds 0 to 2 (three elements) takes two fields. Returns the number of fields stored; elements
// behind it keep their old contents. A trailing delimiter makes no empty last field; an empty text
// gives 0 and touches nothing; fields that do not fit are dropped.
std::int16_t SplitFields(std::string_view text, std::span<std::string> fields,
                         std::string_view delimiter);

// Takes a path apart: "C:", "\a\b" (no trailing backslash), "name", "ext" (no point). The result
// for odd paths is as the function's tests show.
void SplitPath(std::string_view path, std::string& drive, std::string& folder,
               std::string& base_name, std::string& extension);

// The text resource of this name and type, as TextOfResource. Empty if there is no such resource.
// Raises nothing.
std::string LoadResText(const Machine& machine, std::string_view id, std::string_view type);

// The bytes of a text resource as UTF-8: two or more NULs at the end are cut to one, but a text of
// NULs alone stays as it is. Raises nothing.
std::string TextOfResource(const Machine& machine, std::string_view bytes);

}  // namespace logbook
