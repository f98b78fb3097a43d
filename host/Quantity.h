// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Numbers that keep the scatter of the instrument's quantities apart. A number is never given to
// another quantity: that would change every snapshot made with a known seed.
#pragma once

#include <cstdint>

namespace logbook::host {

inline constexpr std::uint32_t kMeterQuantity = 1;
inline constexpr std::uint32_t kAnalogQuantity = 2;
inline constexpr std::uint32_t kSystemQuantity = 3;
inline constexpr std::uint32_t kStampQuantity = 4;
inline constexpr std::uint32_t kOutputQuantity = 5;
inline constexpr std::uint32_t kInputQuantity = 6;
inline constexpr std::uint32_t kSenseQuantity = 7;
inline constexpr std::uint32_t kOtherQuantity = 8;
inline constexpr std::uint32_t kResoQuantity = 9;
inline constexpr std::uint32_t kParamQuantity = 10;
inline constexpr std::uint32_t kLogTextQuantity = 11;
inline constexpr std::uint32_t kCalendarQuantity = 12;
inline constexpr std::uint32_t kDamageQuantity = 13;

}  // namespace logbook::host
