// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "catalogue/OptionGating.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <string>

#include "base/Files.h"
#include "base/Profile.h"
#include "base/RunTimeError.h"
#include "text/LeadingNumber.h"

namespace logbook {
namespace {

using Option = double LogOptions::*;

enum class Test { kIs, kIsNot };

// Both ends included; the default is empty.
struct RowRange {
  int first = 1;
  int last = 0;
};

// The rows are disabled where the option is, or is not, that number.
struct Rule {
  Option option;
  Test test;
  double number;
  std::array<RowRange, 6> rows;
};

// clang-format off
constexpr auto kMeterRules = std::to_array<Rule>({
    {&LogOptions::SC,      Test::kIs,    0, {{{13, 13}}}},
    {&LogOptions::OPGS,    Test::kIs,    0, {{{6, 6}, {11, 12}}}},
    {&LogOptions::LENS,    Test::kIs,    0, {{{22, 24}}}},
    {&LogOptions::COLOPGS, Test::kIs,    0, {{{24, 24}}}},
    {&LogOptions::STYLEB,  Test::kIs,    0, {{{25, 27}}}},
    {&LogOptions::STYLEB,  Test::kIsNot, 0, {{{14, 15}, {17, 18}, {20, 21}}}},
    {&LogOptions::AFC,     Test::kIs,    1, {{{10, 10}}}},
    {&LogOptions::AFC,     Test::kIsNot, 1, {{{28, 28}}}},
});

constexpr auto kAnalogRules = std::to_array<Rule>({
    {&LogOptions::SC,      Test::kIs,    0, {{{43, 45}}}},
    {&LogOptions::OPGS,    Test::kIs,    0, {{{35, 35}, {40, 41}}}},
    {&LogOptions::COLOPGS, Test::kIs,    0, {{{105, 105}}}},
    {&LogOptions::STYLEB,  Test::kIs,    0, {{{169, 172}}}},
    {&LogOptions::STYLEB,  Test::kIsNot, 0, {{{46, 47}, {49, 50}, {52, 53}, {58, 59}}}},
    {&LogOptions::QPTYPE,  Test::kIs,    1, {{{63, 64}}}},
    {&LogOptions::QPTYPE,  Test::kIsNot, 1, {{{192, 192}}}},
    {&LogOptions::AFC,     Test::kIs,    1, {{{39, 39}, {42, 42}}}},
    {&LogOptions::AFC,     Test::kIsNot, 1, {{{193, 214}}}},
});

// QPTYPE and AFC are held against 0 here and against 1 above, so a 2 is on opposite sides.
constexpr auto kSysRules = std::to_array<Rule>({
    {&LogOptions::STYLEB,  Test::kIs,    0, {{{204, 225}}}},
    {&LogOptions::STYLEB,  Test::kIsNot, 0, {{{0, 6}, {8, 17}, {25, 28}, {106, 109}, {158, 159}, {161, 161}}}},
    {&LogOptions::QPTYPE,  Test::kIs,    0, {{{240, 241}}}},
    {&LogOptions::QPTYPE,  Test::kIsNot, 0, {{{66, 67}}}},
    {&LogOptions::AFC,     Test::kIs,    0, {{{242, 243}}}},
    {&LogOptions::AFC,     Test::kIsNot, 0, {{{113, 113}, {115, 115}, {117, 117}, {119, 119}, {121, 126}}}},
});

// By lens family 0 to 3.
constexpr auto kTuneLensGroups  = std::to_array<int>({5, 7, 9, 11});
constexpr auto kAnalogLensRows  = std::to_array<RowRange>({{71, 90}, {107, 124}, {150, 168}, {173, 191}});
// The row "LmrP Bias" of the families with LENS = 1; all three print in one section.
constexpr auto kLensBiasRows    = std::to_array<int>({113, 157, 180});
// clang-format on

// Tune groups whose values depend on options by rules of their own.
constexpr int kSensitivityGroup = 1;
constexpr int kReactionCellGroup = 8;
constexpr int kInstrumentNameGroup = 10;
// "Mass(Doubly Charged)", not the row that the name of OPT_COLOPGS suggests.
constexpr int kColOpgsRow = 60;

constexpr int kOldRfGroup = 7;
constexpr int kNewRfGroup = 14;
// Rows that stand in sys.txt and that no report prints.
constexpr RowRange kUnprintedSysRows = {15, 17};

bool Holds(const RowRange& range, int row) {
  return row >= range.first && row <= range.last;
}

bool Names(const Rule& rule, int row) {
  return std::any_of(rule.rows.begin(), rule.rows.end(),
                     [row](const RowRange& range) { return Holds(range, row); });
}

bool IsNamedBy(std::span<const Rule> rules, int row) {
  return std::any_of(rules.begin(), rules.end(),
                     [row](const Rule& rule) { return Names(rule, row); });
}

bool IsDisabledBy(std::span<const Rule> rules, int row, const LogOptions& options) {
  return std::any_of(rules.begin(), rules.end(), [&](const Rule& rule) {
    const bool equal = options.*rule.option == rule.number;
    return equal == (rule.test == Test::kIs) && Names(rule, row);
  });
}

double OptionNumber(std::string_view text) {
  try {
    return LeadingNumber(text);
  } catch (const RunTimeError&) {
    return std::numeric_limits<double>::infinity();
  }
}

}  // namespace

LogOptions ParseLogOptions(const Machine& machine, std::string_view logfile_bytes) {
  constexpr std::size_t kBuffer = 512;
  std::array<std::string_view, kOptionKeys.size()> keys;
  std::transform(kOptionKeys.begin(), kOptionKeys.end(), keys.begin(),
                 [](const OptionKey& entry) { return entry.Key; });
  const std::vector<std::string> texts =
      GetProfileStrings(machine, "OPTION", keys, "0", kBuffer, logfile_bytes);
  LogOptions options;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    options.*kOptionKeys[i].Member = OptionNumber(texts[i]);
  }
  return options;
}

int LensMode(double lens, double lens2, double lens3) {
  if (lens != 1) return 0;
  if (lens2 != 1) return 1;
  return lens3 != 1 ? 2 : 3;
}

int LensMode(const LogOptions& options) {
  return LensMode(options.LENS, options.LENS2, options.LENS3);
}

bool IsDisabledTuneParam(std::int16_t group, double lens, double lens2, double lens3) {
  const auto family = std::find(kTuneLensGroups.begin(), kTuneLensGroups.end(), group);
  return family != kTuneLensGroups.end() &&
         family - kTuneLensGroups.begin() != LensMode(lens, lens2, lens3);
}

bool IsDisabledTuneRow(int row, std::int16_t group, const LogOptions& options,
                       const MacroFlags& flags) {
  return IsDisabledTuneParam(group, options.LENS, options.LENS2, options.LENS3) ||
         (group == kReactionCellGroup && (options.LENS == 0 || flags.Clmd == 0)) ||
         (row == kColOpgsRow && flags.ColOpgs == 0);
}

bool IsHiddenInList(std::int16_t group, const LogOptions& options) {
  return group == kInstrumentNameGroup && options.Security != 1;
}

bool NegativeMeansUnused(std::int16_t group) {
  return group == kSensitivityGroup;
}

bool IsDisabledMeterParam(std::int16_t row, const LogOptions& options) {
  return IsDisabledBy(kMeterRules, row, options);
}

bool IsDisabledAnalogParam(const Catalogues& catalogues, std::int16_t row,
                           const LogOptions& options) {
  const int group = RowAt(catalogues.AnalogItems, row).Group;
  if (options.NEW_RF == 0 && group == kNewRfGroup) return true;
  if (options.NEW_RF == 1 && group == kOldRfGroup) return true;
  const int mode = LensMode(options);
  for (int family = 0; family < static_cast<int>(kAnalogLensRows.size()); ++family) {
    const RowRange& block = kAnalogLensRows[static_cast<std::size_t>(family)];
    if (family != mode && Holds(block, row)) return true;
  }
  return IsDisabledBy(kAnalogRules, row, options);
}

bool IsDisabledSysParam(std::int16_t row, const LogOptions& options) {
  return IsDisabledBy(kSysRules, row, options);
}

bool OptionsBearOnTuneParam(std::int16_t group) {
  return group == kReactionCellGroup || group == kInstrumentNameGroup ||
         std::find(kTuneLensGroups.begin(), kTuneLensGroups.end(), group) != kTuneLensGroups.end();
}

bool OptionsBearOnMeterParam(std::int16_t row) {
  return IsNamedBy(kMeterRules, row);
}

bool OptionsBearOnAnalogParam(const Catalogues& catalogues, std::int16_t row) {
  const int group = RowAt(catalogues.AnalogItems, row).Group;
  return group == kNewRfGroup || group == kOldRfGroup || IsNamedBy(kAnalogRules, row) ||
         std::any_of(kAnalogLensRows.begin(), kAnalogLensRows.end(),
                     [row](const RowRange& block) { return Holds(block, row); });
}

bool IsOmittedAnalogParam(std::int16_t row, const LogOptions& options) {
  const int mode = LensMode(options);
  if (mode == 0) return false;
  return std::find(kLensBiasRows.begin(), kLensBiasRows.end(), row) != kLensBiasRows.end() &&
         row != kLensBiasRows[static_cast<std::size_t>(mode - 1)];
}

bool IsOmittedSysParam(std::int16_t row) {
  return Holds(kUnprintedSysRows, row);
}

}  // namespace logbook
