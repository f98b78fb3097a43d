// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/ColumnValues.h"

#include <functional>
#include <optional>

#include "base/RunTimeError.h"
#include "catalogue/OptionGating.h"
#include "snapshot/MacroFile.h"
#include "text/NumberFormat.h"

namespace logbook {
namespace {

constexpr std::string_view kMeterFile = "auser.txt";
constexpr std::string_view kAnalogFile = "aall.txt";
constexpr const char* kNotApplicable = "N/A";

LogSnapshots& SnapshotsOf(AppState& state, int log) {
  return state.snapshots.Log(state.LogRoot, state.FileList[static_cast<std::size_t>(log)].Name);
}

void SetHeader(AppState& state, int column, const std::string& text) {
  state.ListView1.Column(column + 2).Text = text;
}

void SetCell(AppState& state, int log, int column, std::string text) {
  state.ListView1.Row(log).SubItem(column + 1) = std::move(text);
}

// Tells whether the row does not apply to a log.
using Predicate = std::function<bool(LogSnapshots&)>;

// A column of a positional snapshot file.
void FillPositionalList(AppState& state, int column, const ItemRecord& record, int item,
                        std::string_view file, const Predicate& is_disabled) {
  const SnapshotCache::Pass pass(state.snapshots);
  SetHeader(state, column, ColumnHeader(record.Name, record.Unit));
  bool trap_armed = false;
  for (int log = 1; log <= state.LogCount; ++log) {
    LogSnapshots& snapshots = SnapshotsOf(state, log);
    if (is_disabled && is_disabled(snapshots)) {
      SetCell(state, log, column, kNotApplicable);
      continue;
    }
    std::optional<double> value;
    try {
      value = snapshots.Number(file, item);
      if (!value) continue;
    } catch (const RunTimeError&) {
      if (!trap_armed) throw;
      value = 0;
    }
    // Armed by the first file that opens, for the rest of the fill.
    trap_armed = true;
    SetCell(state, log, column, FormatNumber(*value, record.Format));
  }
}

// The cell of a tune row in one log; nothing if it is to stay as it is.
std::optional<std::string> TuneCell(const TuneItemRecord& record, int item,
                                    LogSnapshots& snapshots) {
  const std::optional<MacroLines> found = snapshots.Macro(record.File, record.Var);
  if (!found) return std::nullopt;
  const MacroLines& lines = *found;
  const MacroFlags flags = {MacroFlag(lines.ColOpgs), MacroFlag(lines.Clmd)};
  if (lines.Value.empty()) return std::nullopt;
  LogOptions options;
  if (OptionsBearOnTuneParam(record.Group)) {
    options = snapshots.Options();
  }
  if (IsDisabledTuneRow(item, record.Group, options, flags) ||
      IsHiddenInList(record.Group, options)) {
    return kNotApplicable;
  }
  if (record.Format.empty()) return MacroText(lines.Value);
  const double value = MacroNumber(lines.Value);
  if (value < 0 && NegativeMeansUnused(record.Group)) return kNotApplicable;
  return FormatNumber(value, record.Format);
}

}  // namespace

void FillMeterList(AppState& state, std::int16_t column, const std::string&, int item) {
  const ItemRecord& record = RowAt(state.catalogues.MeterItems, item);
  const auto row = static_cast<std::int16_t>(item);
  Predicate is_disabled;
  if (OptionsBearOnMeterParam(row)) {
    is_disabled = [row](LogSnapshots& log) { return IsDisabledMeterParam(row, log.Options()); };
  }
  FillPositionalList(state, column, record, item, kMeterFile, is_disabled);
}

void FillAnalogList(AppState& state, std::int16_t column, const std::string&, int item) {
  const ItemRecord& record = RowAt(state.catalogues.AnalogItems, item);
  const auto row = static_cast<std::int16_t>(item);
  Predicate is_disabled;
  if (OptionsBearOnAnalogParam(state.catalogues, row)) {
    is_disabled = [&catalogues = state.catalogues, row](LogSnapshots& log) {
      return IsDisabledAnalogParam(catalogues, row, log.Options());
    };
  }
  FillPositionalList(state, column, record, item, kAnalogFile, is_disabled);
}

void FillTuneList(AppState& state, std::int16_t column, const std::string&, int item) {
  const TuneItemRecord& record = RowAt(state.catalogues.TuneItems, item);
  SetHeader(state, column, ColumnHeader(record.Name, record.Unit));
  const SnapshotCache::Pass pass(state.snapshots);
  for (int log = 1; log <= state.LogCount; ++log) {
    if (auto cell = TuneCell(record, item, SnapshotsOf(state, log))) {
      SetCell(state, log, column, *std::move(cell));
    }
  }
}

void ExpectColumn(const AppState& state, const ColumnChoice& choice, SnapshotWants& wants) {
  const int item = choice.item;
  const auto is_row_of = [item](const auto& items) {
    return item >= 0 && item < static_cast<int>(items.size());
  };
  const auto row = static_cast<std::int16_t>(item);
  const Catalogues& catalogues = state.catalogues;
  if (choice.category == kMeterCategory && is_row_of(catalogues.MeterItems)) {
    wants.Add(kMeterFile, item);
    wants.options |= OptionsBearOnMeterParam(row);
  } else if (choice.category == kAnalogCategory && is_row_of(catalogues.AnalogItems)) {
    wants.Add(kAnalogFile, item);
    wants.options |= OptionsBearOnAnalogParam(catalogues, row);
  } else if (choice.category == kTuneCategory && is_row_of(catalogues.TuneItems)) {
    const TuneItemRecord& record = RowAt(catalogues.TuneItems, item);
    wants.Add(record.File, record.Var);
    wants.options |= OptionsBearOnTuneParam(record.Group);
  }
}

std::string ColumnHeader(std::string_view name, std::string_view unit) {
  std::string header(name);
  if (!unit.empty()) header.append(" (").append(unit).append(")");
  return header;
}

}  // namespace logbook
