// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/ReportRows.h"

namespace logbook {
namespace {

// The row "PWM Threshold Voltage Manual Setting" has no place of its own: it stands in for "RF
// Bias" on an instrument with the new RF unit.
constexpr std::int16_t kRfBiasRow = 44;
constexpr std::int16_t kPwmThresholdRow = 54;

bool IsBoutNotApplicable(int row, const LogOptions& options) {
  if (options.STYLEB == 1 && (row == 30 || row == 31)) return true;
  return options.AFC == 1 ? row == 12 || row == 15 : row == 57;
}

constexpr int kOldRfBinRows = 58;
constexpr int kNewRfBinRows = 62;

// The row that stands at this place on an instrument with the new RF unit.
std::int16_t NewRfBinRow(std::int16_t row) {
  switch (row) {
    case 27:
      return 62;
    case 32:
      return 63;
    case 36:
      return 64;
    default:
      return row;
  }
}

}  // namespace

std::vector<BitPlace> BitOutPlaces(const LogOptions& options) {
  std::vector<BitPlace> places;
  for (std::int16_t row = 0; row < kBoutRowCount; ++row) {
    if (row == kPwmThresholdRow) continue;
    const bool replaced = row == kRfBiasRow && options.NEW_RF == 1;
    places.push_back({replaced ? kPwmThresholdRow : row, IsBoutNotApplicable(row, options)});
  }
  return places;
}

std::vector<BitPlace> BitInPlaces(const LogOptions& options) {
  const bool new_rf = options.NEW_RF == 1;
  std::vector<BitPlace> places;
  for (std::int16_t row = 0; row < (new_rf ? kNewRfBinRows : kOldRfBinRows); ++row) {
    places.push_back({new_rf ? NewRfBinRow(row) : row, options.STYLEB == 1 && row == 16});
  }
  return places;
}

}  // namespace logbook
