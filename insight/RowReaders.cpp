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

RowValue NumberValue(const std::optional<double>& number) {
  return number ? RowValue{ValueState::kOk, *number, {}} : InState(ValueState::kNoNumber);
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

// The numbers of a positional file; nothing for a field without one.
std::vector<std::optional<double>> NumbersIn(SequentialReader& reader, int count) {
  std::vector<std::optional<double>> numbers;
  while (static_cast<int>(numbers.size()) < count && !reader.AtEnd()) {
    numbers.push_back(HeldNumber(reader.ReadNumberField()));
  }
  return numbers;
}

template <typename Predicate>
std::vector<RowValue> ReadPositional(const RowSource& source, std::string_view name, int count,
                                     Predicate is_disabled) {
  const LogFile* file = source.files.Find(name);
  std::vector<std::optional<double>> numbers;
  if (IsThere(file)) {
    SequentialReader reader(source.code_page, file->Bytes);
    numbers = NumbersIn(reader, count);
  }
  std::vector<RowValue> values;
  for (std::int16_t row = 0; row < count; ++row) {
    const auto index = static_cast<std::size_t>(row);
    if (is_disabled(row)) {
      values.push_back(InState(ValueState::kNotApplicable));
    } else if (!IsThere(file)) {
      values.push_back(InState(ValueState::kFileMissing));
    } else if (index >= numbers.size()) {
      values.push_back(InState(ValueState::kFileShort));
    } else {
      values.push_back(NumberValue(numbers[index]));
    }
  }
  return values;
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

// Whether the switches of its macro file leave the row without a value, where it applies with both
// of them set. A switch that cannot be read leaves that open.
std::optional<ValueState> StateBySwitches(const RowSource& source, int row, std::int16_t group,
                                          const MacroViews& lines) {
  if (!IsDisabledTuneRow(row, group, source.options, {0, 0})) return std::nullopt;
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
  if (IsDisabledTuneRow(row, item.Group, source.options, {1, 1}) ||
      IsHiddenInList(item.Group, source.options)) {
    return InState(ValueState::kNotApplicable);
  }
  if (const auto state = StateBySwitches(source, row, item.Group, lines)) return InState(*state);
  if (item.Format.empty()) return TextValue(lines.Value);
  const std::optional<double> number = HeldNumber(BehindEqualSign(lines.Value));
  if (number && *number < 0 && NegativeMeansUnused(item.Group)) {
    return InState(ValueState::kNotApplicable);
  }
  return NumberValue(number);
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

// Rows that the report of this instrument does not print do not apply.
std::vector<RowValue> ReadBits(const RowSource& source, std::span<const BitItemRecord> items,
                               int count, const ReportLayout& layout,
                               const std::vector<BitPlace>& places) {
  std::vector<RowValue> values(static_cast<std::size_t>(count),
                               InState(ValueState::kNotApplicable));
  const LogFile* file = source.files.Find(layout.Snapshot);
  std::vector<std::optional<std::uint16_t>> words;
  if (IsThere(file)) {
    SequentialReader reader(source.code_page, file->Bytes);
    words = WordsIn(reader);
  }
  for (const BitPlace& place : places) {
    const BitItemRecord& item = RowAt(items, place.Row);
    if (place.Disabled || !IsJoined(layout, item.Group, source.options)) continue;
    RowAt(values, place.Row) =
        IsThere(file) ? BitValue(item, words) : InState(ValueState::kFileMissing);
  }
  return values;
}

// The field of each system parameter: a number, or the text of the stamp.
std::vector<RowValue> SysFieldsIn(SequentialReader& reader) {
  std::vector<RowValue> fields;
  while (static_cast<int>(fields.size()) < kSysRowCount && !reader.AtEnd()) {
    if (fields.size() == kStampRow) {
      fields.push_back({ValueState::kOk, 0, reader.ReadText()});
    } else {
      fields.push_back(NumberValue(HeldNumber(reader.ReadNumberField())));
    }
  }
  return fields;
}

bool IsSysNotApplicable(const RowSource& source, std::int16_t row) {
  if (row == kStampRow) return false;
  const int group = RowAt(source.catalogues.SysItems, row).Group;
  return IsDisabledSysParam(row, source.options) ||
         !IsJoined(kReportLayouts[2], group, source.options);
}

}  // namespace

std::vector<RowValue> ReadMeterRows(const RowSource& source) {
  return ReadPositional(source, "auser.txt", kMeterRowCount, [&](std::int16_t row) {
    return IsDisabledMeterParam(row, source.options);
  });
}

std::vector<RowValue> ReadAnalogRows(const RowSource& source) {
  return ReadPositional(source, "aall.txt", kAnalogRowCount, [&](std::int16_t row) {
    return IsDisabledAnalogParam(source.catalogues, row, source.options);
  });
}

std::vector<RowValue> ReadTuneRows(const RowSource& source) {
  std::vector<RowValue> values(kTuneRowCount, InState(ValueState::kFileMissing));
  for (const std::string_view name : kMacroFiles) {
    const std::optional<std::string_view> bytes = MacroBytes(source, std::string(name));
    if (!bytes) continue;
    const MacroLookup::Lines lines = source.macros.Find(source.code_page, name, *bytes);
    for (const auto& [row, views] : lines.Rows) RowAt(values, row) = TuneValue(source, row, views);
  }
  return values;
}

std::vector<RowValue> ReadSysRows(const RowSource& source) {
  const LogFile* file = source.files.Find("sys.txt");
  std::vector<RowValue> values;
  if (IsThere(file)) {
    SequentialReader reader(source.code_page, file->Bytes);
    values = SysFieldsIn(reader);
  }
  values.resize(kSysRowCount,
                InState(IsThere(file) ? ValueState::kFileShort : ValueState::kFileMissing));
  for (std::int16_t row = 0; row < kSysRowCount; ++row) {
    if (IsSysNotApplicable(source, row)) RowAt(values, row) = InState(ValueState::kNotApplicable);
  }
  return values;
}

std::vector<RowValue> ReadBitOutRows(const RowSource& source) {
  return ReadBits(source, source.catalogues.BoutItems, kBoutRowCount, kReportLayouts[3],
                  BitOutPlaces(source.options));
}

std::vector<RowValue> ReadBitInRows(const RowSource& source) {
  return ReadBits(source, source.catalogues.BinItems, kBinRowCount, kReportLayouts[4],
                  BitInPlaces(source.options));
}

}  // namespace logbook::insight
