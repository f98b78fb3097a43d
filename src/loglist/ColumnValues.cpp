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

constexpr const char* kNotApplicable = "N/A";

std::string LogFolder(const AppState& state, int log) {
  return state.LogRoot + state.FileList[static_cast<std::size_t>(log)].Name + "\\";
}

void SetHeader(AppState& state, int column, const std::string& text) {
  state.ListView1.Column(column + 2).Text = text;
}

void SetCell(AppState& state, int log, int column, std::string text) {
  state.ListView1.Row(log).SubItem(column + 1) = std::move(text);
}

// Tells by the path of a log's logfile.ini whether the row does not apply.
using Predicate = std::function<bool(const std::string&)>;

// A column of a positional snapshot file.
void FillPositionalList(AppState& state, int column, const ItemRecord& record, int item,
                        const std::string& file, const Predicate& is_disabled) {
  SetHeader(state, column, ColumnHeader(record.Name, record.Unit));
  bool trap_armed = false;
  for (int log = 1; log <= state.LogCount; ++log) {
    const std::string folder = LogFolder(state, log);
    if (is_disabled(folder + "logfile.ini")) {
      SetCell(state, log, column, kNotApplicable);
      continue;
    }
    std::optional<double> value;
    try {
      value = state.snapshots.Number(folder + file, item);
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
std::optional<std::string> TuneCell(AppState& state, const TuneItemRecord& record, int item,
                                    const std::string& folder) {
  const std::optional<std::string> path = state.snapshots.FindMacro(folder, record.File);
  if (!path) return std::nullopt;
  const MacroLines lines = state.snapshots.Macro(*path, record.Var);
  const MacroFlags flags = {MacroFlag(lines.ColOpgs), MacroFlag(lines.Clmd)};
  if (lines.Value.empty()) return std::nullopt;
  LogOptions options;
  if (OptionsBearOnTuneParam(record.Group)) {
    options = state.snapshots.Options(folder + "logfile.ini");
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
  const bool optional = OptionsBearOnMeterParam(row);
  FillPositionalList(state, column, record, item, "auser.txt", [&](const std::string& ini) {
    return optional && IsDisabledMeterParam(row, state.snapshots.Options(ini));
  });
}

void FillAnalogList(AppState& state, std::int16_t column, const std::string&, int item) {
  const ItemRecord& record = RowAt(state.catalogues.AnalogItems, item);
  const auto row = static_cast<std::int16_t>(item);
  const bool optional = OptionsBearOnAnalogParam(state.catalogues, row);
  FillPositionalList(state, column, record, item, "aall.txt", [&](const std::string& ini) {
    return optional && IsDisabledAnalogParam(state.catalogues, row, state.snapshots.Options(ini));
  });
}

void FillTuneList(AppState& state, std::int16_t column, const std::string&, int item) {
  const TuneItemRecord& record = RowAt(state.catalogues.TuneItems, item);
  SetHeader(state, column, ColumnHeader(record.Name, record.Unit));
  for (int log = 1; log <= state.LogCount; ++log) {
    if (auto cell = TuneCell(state, record, item, LogFolder(state, log))) {
      SetCell(state, log, column, *std::move(cell));
    }
  }
}

std::string ColumnHeader(std::string_view name, std::string_view unit) {
  std::string header(name);
  if (!unit.empty()) header.append(" (").append(unit).append(")");
  return header;
}

}  // namespace logbook
