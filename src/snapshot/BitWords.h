// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The bit snapshots bout.txt and bin.txt: sixteen text fields, each with a 16-bit word as
// hexadecimal digits at its right end (docs/file-formats.md). A row of a bit catalogue is answered
// from the words by its Word and Mask.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "snapshot/SequentialReader.h"

namespace logbook {

// The words by their numbers, 0 to 15.
using BitWords = std::array<std::uint16_t, 16>;

// The word of one field (UTF-8): the hexadecimal digits that its last four characters begin with;
// 0 if they begin with none. Raises nothing.
std::uint16_t BitWord(std::string_view field);

// The same; nothing if they begin with none.
std::optional<std::uint16_t> FindBitWord(std::string_view field);

// Reads the sixteen words; what follows them is left alone. Raises kInputPastEndOfFile if there are
// fewer fields.
BitWords ReadBitWords(SequentialReader& file);

}  // namespace logbook
