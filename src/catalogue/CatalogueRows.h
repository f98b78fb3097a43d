// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The rows of the fixed catalogue tables (MeterItemsTable.h and its neighbours) and what the
// compiler checks of them. Row numbers are file format: a row may be appended and never moved,
// renumbered or removed. The label in a row is a checked copy; the label that is shown comes from
// the string table, by the row's string number.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "resources/StringNumbers.h"

namespace logbook {

struct ItemRow {
  std::int16_t Row;
  int String;
  std::string_view Label;
  std::string_view Unit;
  std::string_view Format;
  std::int16_t Group;
};

struct TuneItemRow {
  std::int16_t Row;
  int String;
  std::string_view Label;
  std::string_view Unit;
  std::string_view Format;
  std::string_view File;
  std::string_view Var;
  std::int16_t Group;
};

struct BitItemRow {
  std::int16_t Row;
  int String;
  std::string_view Label;
  std::string_view Label0;
  std::string_view Label1;
  std::int16_t Word;
  std::uint16_t Mask;
  std::int16_t Group;
};

// A reading of a bit and its number in the string table.
struct StateLabel {
  int String;
  std::string_view Text;
};

// clang-format off
//  string  text
inline constexpr auto kStateLabels = std::to_array<StateLabel>({
    {3200, "Off"},
    {3201, "Start"},
    {3202, "Stop"},
    {3203, "Abort"},
    {3204, "Reset"},
    {3205, "Clear"},
    {3206, "Disable"},
    {3207, "Enable"},
    {3208, "Backward"},
    {3209, "Forward"},
    {3210, "Ignore"},
    {3211, "Select"},
    {3212, "Close"},
    {3213, "Open"},
    {3214, "On"},
    {3215, "Inactive"},
    {3216, "Active"},
    {3217, "Low(15V)"},
    {3218, "High(24V)"},
    {3219, "Auto"},
    {3220, "Busy"},
    {3221, "Ready"},
    {3222, "Not Detect"},
    {3223, "Detect"},
    {3224, "Normal"},
    {3225, "Error"},
    {3226, "Lost"},
    {3227, "Tracking"},
    {3228, "Balance"},
    {3229, "Unbalance"},
    {3230, "Over Limit"},
    {3231, "Under Limit"},
    {3232, "Connected"},
    {3233, "Disconnected"},
});

inline constexpr auto kKnownFormats = std::to_array<std::string_view>({
    "0", "0.0", "0.00", "0.000", "0.0000", "0.00000", "0.000000",
    "0.0e-#", "0.00e-#", "0.000e-#", "0.0000000e-#", "0.000e-", "1", "",
});

inline constexpr auto kMacroFiles = std::to_array<std::string_view>({
    "sensevar.mac", "othervar.mac", "resovar.mac", "paramvar.mac",
});
// clang-format on

// The string number of a bit's reading; 0 if it is none of the known ones.
constexpr int StateString(std::string_view text) {
  for (const StateLabel& state : kStateLabels) {
    if (state.Text == text) return state.String;
  }
  return 0;
}

template <typename Table>
constexpr bool RowsAreDense(const Table& table) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (table[i].Row != static_cast<std::int16_t>(i)) return false;
  }
  return true;
}

template <typename Table>
constexpr bool StringsExist(const Table& table) {
  return std::all_of(table.begin(), table.end(),
                     [](const auto& row) { return HasString(row.String); });
}

template <typename Table>
constexpr bool GroupsAreWithin(const Table& table, int first, int last) {
  return std::all_of(table.begin(), table.end(),
                     [=](const auto& row) { return row.Group >= first && row.Group <= last; });
}

template <typename Table>
constexpr bool FormatsAreKnown(const Table& table) {
  return std::all_of(table.begin(), table.end(), [](const auto& row) {
    return std::find(kKnownFormats.begin(), kKnownFormats.end(), row.Format) != kKnownFormats.end();
  });
}

template <typename Table>
constexpr bool MacroFilesAreKnown(const Table& table) {
  return std::all_of(table.begin(), table.end(), [](const auto& row) {
    return std::find(kMacroFiles.begin(), kMacroFiles.end(), row.File) != kMacroFiles.end();
  });
}

// Also that each word is one of the sixteen of a snapshot.
template <typename Table>
constexpr bool MasksAreSingleBits(const Table& table) {
  return std::all_of(table.begin(), table.end(), [](const auto& row) {
    return std::has_single_bit(row.Mask) && row.Word >= 0 && row.Word <= 15;
  });
}

template <typename Table>
constexpr bool StateLabelsAreKnown(const Table& table) {
  return std::all_of(table.begin(), table.end(), [](const auto& row) {
    return StateString(row.Label0) != 0 && StateString(row.Label1) != 0;
  });
}

static_assert(StringsExist(kStateLabels));

}  // namespace logbook
