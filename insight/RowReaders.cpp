// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/RowReaders.h"

#include <optional>
#include <string>

#include "base/RunTimeError.h"
#include "catalogue/CatalogueRows.h"
#include "reports/ReportLayouts.h"
#include "reports/ReportRows.h"
#include "snapshot/BitWords.h"
#include "snapshot/MacroFile.h"
#include "snapshot/SequentialReader.h"
#include "snapshot/SystemParameters.h"
#include "text/LeadingNumber.h"

namespace logbook::insight {
namespace {

constexpr std::size_t kBitWords = 16;

RowValue InState(ValueState state) {
  return {state, 0, {}};
}

// The number that a text begins with; nothing also if a double cannot hold it.
std::optional<double> HeldNumber(std::string_view text) {
  try {
    return FindLeadingNumber(text);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

// The file's bytes can be had.
bool IsThere(const LogFile* file) {
  return file != nullptr && file->What == LogFile::Kind::kFile;
}

// The values of one catalogue in a line of all.
std::span<RowValue> ValuesOf(Catalogue which, std::vector<RowValue>& all) {
  return std::span(all).subspan(static_cast<std::size_t>(PlaceOf({which, 0})),
                                static_cast<std::size_t>(InfoOf(which).Rows));
}

Gate GateOf(const RowSource& source, Catalogue which, int row) {
  return source.gates[static_cast<std::size_t>(PlaceOf({which, row}))];
}

void SetNumber(const std::optional<double>& number, RowValue& value) {
  value.State = number ? ValueState::kOk : ValueState::kNoNumber;
  value.Number = number.value_or(0);
}

// The rows of a file of fields, one after the other. A field is taken for each row, also for one
// that does not apply; `take` gives it to the value.
template <typename Take>
void ReadPositional(const RowSource& source, std::string_view name, Catalogue which,
                    std::span<RowValue> values, Take take) {
  const LogFile* file = source.files.Find(name);
  const bool there = IsThere(file);
  SequentialReader reader(source.code_page, there ? std::string_view(file->Bytes) : "");
  const auto first = static_cast<std::size_t>(PlaceOf({which, 0}));
  for (std::size_t row = 0; row < values.size(); ++row) {
    RowValue& value = values[row];
    if (there && reader.AtEnd()) {
      value.State = ValueState::kFileShort;
    } else if (there) {
      take(reader, row, value);
    }
    if (source.gates[first + row] == Gate::kNever) value = InState(ValueState::kNotApplicable);
  }
}

void TakeNumber(SequentialReader& reader, std::size_t, RowValue& value) {
  SetNumber(reader.FindNumber(), value);
}

// The stamp is a text among the numbers.
void TakeSysField(SequentialReader& reader, std::size_t row, RowValue& value) {
  if (row != kStampRow) return TakeNumber(reader, row, value);
  value.State = ValueState::kOk;
  value.Text = reader.ReadText();
}

// The bytes of a macro file, found by the rule of the list; nothing if it is missing.
std::optional<std::string_view> MacroBytes(const RowSource& source, const std::string& name) {
  for (const std::string& each : MacroFileNames(name)) {
    const LogFile* file = source.files.Find(each);
    if (file == nullptr || file->What == LogFile::Kind::kNothing) continue;
    if (!IsThere(file)) return std::nullopt;
    return file->Bytes;
  }
  return std::nullopt;
}

// A flag of a macro file; nothing if it does not fit 16 bits.
std::optional<std::int16_t> FlagOf(std::string_view line) {
  try {
    return MacroFlag(line);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

RowValue TextValue(std::string_view line) {
  try {
    return {ValueState::kOk, 0, MacroText(line)};
  } catch (const RunTimeError&) {
    return InState(ValueState::kNoNumber);
  }
}

// Whether the switches of its macro file leave the row without a value. A switch that cannot be
// read leaves that open.
std::optional<ValueState> StateBySwitches(const RowSource& source, int row, std::int16_t group,
                                          const MacroViews& lines) {
  const std::optional<std::int16_t> col_opgs = FlagOf(lines.ColOpgs);
  const std::optional<std::int16_t> clmd = FlagOf(lines.Clmd);
  const auto disabled = [&](std::int16_t unread) {
    return IsDisabledTuneRow(row, group, source.options,
                             {col_opgs.value_or(unread), clmd.value_or(unread)});
  };
  if (disabled(1)) return ValueState::kNotApplicable;
  if (disabled(0)) return ValueState::kNoNumber;
  return std::nullopt;
}

RowValue TuneValue(const RowSource& source, int row, const MacroViews& lines) {
  const TuneItemRecord& item = RowAt(source.catalogues.TuneItems, row);
  if (lines.Value.empty()) return InState(ValueState::kFileShort);
  const Gate gate = GateOf(source, Catalogue::kTune, row);
  if (gate == Gate::kNever) return InState(ValueState::kNotApplicable);
  if (gate == Gate::kBySwitches) {
    if (const auto state = StateBySwitches(source, row, item.Group, lines)) return InState(*state);
  }
  if (item.Format.empty()) return TextValue(lines.Value);
  const std::optional<double> number = HeldNumber(BehindEqualSign(lines.Value));
  if (number && *number < 0 && NegativeMeansUnused(item.Group)) {
    return InState(ValueState::kNotApplicable);
  }
  RowValue value;
  SetNumber(number, value);
  return value;
}

void ReadTuneRows(const RowSource& source, std::span<RowValue> values) {
  for (const std::string_view name : kMacroFiles) {
    const std::optional<std::string_view> bytes = MacroBytes(source, std::string(name));
    if (!bytes) continue;
    const MacroLookup::Lines lines = source.macros.Find(source.code_page, name, *bytes);
    for (const auto& [row, views] : lines.Rows) {
      values[static_cast<std::size_t>(row)] = TuneValue(source, row, views);
    }
  }
}

// The words of a bit snapshot; nothing in the place of a field without hexadecimal digits.
std::vector<std::optional<std::uint16_t>> WordsIn(SequentialReader& reader) {
  std::vector<std::optional<std::uint16_t>> words;
  while (words.size() < kBitWords && !reader.AtEnd()) {
    words.push_back(FindBitWord(reader.ReadTextEnd()));
  }
  return words;
}

RowValue BitValue(const BitItemRecord& item,
                  const std::vector<std::optional<std::uint16_t>>& words) {
  // With fewer fields the reports read nothing of the file.
  if (words.size() < kBitWords) return InState(ValueState::kFileShort);
  const std::optional<std::uint16_t>& word = words[static_cast<std::size_t>(item.Word)];
  if (!word) return InState(ValueState::kNoNumber);
  return {ValueState::kOk, BitIsSet(*word, item.Mask) ? 1.0 : 0.0, {}};
}

void ReadBits(const RowSource& source, std::span<const BitItemRecord> items, std::string_view name,
              Catalogue which, std::span<RowValue> values) {
  const LogFile* file = source.files.Find(name);
  std::vector<std::optional<std::uint16_t>> words;
  if (IsThere(file)) {
    SequentialReader reader(source.code_page, file->Bytes);
    words = WordsIn(reader);
  }
  for (int row = 0; row < InfoOf(which).Rows; ++row) {
    RowValue& value = values[static_cast<std::size_t>(row)];
    if (GateOf(source, which, row) == Gate::kNever) {
      value.State = ValueState::kNotApplicable;
    } else if (IsThere(file)) {
      value = BitValue(RowAt(items, row), words);
    }
  }
}

bool IsSysNotApplicable(const Catalogues& catalogues, const LogOptions& options, std::int16_t row) {
  if (row == kStampRow) return false;
  return IsDisabledSysParam(row, options) ||
         !IsJoined(kReportLayouts[2], RowAt(catalogues.SysItems, row).Group, options);
}

Gate TuneGate(const Catalogues& catalogues, const LogOptions& options, int row) {
  const std::int16_t group = RowAt(catalogues.TuneItems, row).Group;
  if (IsDisabledTuneRow(row, group, options, {1, 1}) || IsHiddenInList(group, options)) {
    return Gate::kNever;
  }
  return IsDisabledTuneRow(row, group, options, {0, 0}) ? Gate::kBySwitches : Gate::kApplies;
}

// Rows that the report of this instrument does not print do not apply.
void OpenBits(std::span<const BitItemRecord> items, Catalogue which, const LogOptions& options,
              const ReportLayout& layout, const std::vector<BitPlace>& places, Gates& gates) {
  for (int row = 0; row < InfoOf(which).Rows; ++row) {
    gates[static_cast<std::size_t>(PlaceOf({which, row}))] = Gate::kNever;
  }
  for (const BitPlace& place : places) {
    if (place.Disabled || !IsJoined(layout, RowAt(items, place.Row).Group, options)) continue;
    gates[static_cast<std::size_t>(PlaceOf({which, place.Row}))] = Gate::kApplies;
  }
}

}  // namespace

Gates GatesOf(const Catalogues& catalogues, const LogOptions& options) {
  Gates gates{};
  const auto set = [&](Catalogue which, const auto& never) {
    for (std::int16_t row = 0; row < InfoOf(which).Rows; ++row) {
      gates[static_cast<std::size_t>(PlaceOf({which, row}))] =
          never(row) ? Gate::kNever : Gate::kApplies;
    }
  };
  set(Catalogue::kMeter, [&](std::int16_t row) { return IsDisabledMeterParam(row, options); });
  set(Catalogue::kAnalog,
      [&](std::int16_t row) { return IsDisabledAnalogParam(catalogues, row, options); });
  set(Catalogue::kSys,
      [&](std::int16_t row) { return IsSysNotApplicable(catalogues, options, row); });
  for (int row = 0; row < kTuneRowCount; ++row) {
    gates[static_cast<std::size_t>(PlaceOf({Catalogue::kTune, row}))] =
        TuneGate(catalogues, options, row);
  }
  OpenBits(catalogues.BoutItems, Catalogue::kBitOut, options, kReportLayouts[3],
           BitOutPlaces(options), gates);
  OpenBits(catalogues.BinItems, Catalogue::kBitIn, options, kReportLayouts[4], BitInPlaces(options),
           gates);
  return gates;
}

std::vector<RowValue> ReadRows(const RowSource& source) {
  std::vector<RowValue> all(kAllRows);
  ReadPositional(source, "auser.txt", Catalogue::kMeter, ValuesOf(Catalogue::kMeter, all),
                 TakeNumber);
  ReadPositional(source, "aall.txt", Catalogue::kAnalog, ValuesOf(Catalogue::kAnalog, all),
                 TakeNumber);
  ReadTuneRows(source, ValuesOf(Catalogue::kTune, all));
  ReadPositional(source, "sys.txt", Catalogue::kSys, ValuesOf(Catalogue::kSys, all), TakeSysField);
  ReadBits(source, source.catalogues.BoutItems, kReportLayouts[3].Snapshot, Catalogue::kBitOut,
           ValuesOf(Catalogue::kBitOut, all));
  ReadBits(source, source.catalogues.BinItems, kReportLayouts[4].Snapshot, Catalogue::kBitIn,
           ValuesOf(Catalogue::kBitIn, all));
  return all;
}

}  // namespace logbook::insight
