// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One row of a catalogue over a block of logs, packed into bytes: how the index keeps numbers, so
// that a condition on one row over a hundred thousand logs reads little. Readings are decimal
// numbers with few digits, so a block mostly needs one or two bytes a log. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace logbook::insight {

// Logs of a block, at most.
inline constexpr int kBlockLogs = 256;

// The values of a block by their places in it. A state is that of a value (LogReading.h) as a
// number from 0 to 255; what a column of another kind means by it is its own affair.
struct ValueColumn {
  std::vector<std::uint8_t> States;
  std::vector<double> Numbers;  // as many; finite or infinite, no other

  void Add(std::uint8_t state, double number) {
    States.push_back(state);
    Numbers.push_back(number);
  }
  bool operator==(const ValueColumn&) const = default;
};

// The bytes of a column, with a checksum over them. Raises nothing.
std::string PackColumn(const ValueColumn& column);

// The column of such bytes; nothing if they are damaged.
std::optional<ValueColumn> UnpackColumn(std::string_view bytes);

// A checksum of 32 bits, the same on every machine.
std::uint32_t ChecksumOf(std::string_view bytes);

}  // namespace logbook::insight
