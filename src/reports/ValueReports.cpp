// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "reports/ValueReports.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/MadeFiles.h"
#include "catalogue/OptionGating.h"
#include "reports/ReportLayouts.h"
#include "reports/ReportRows.h"
#include "resources/Resources.h"
#include "snapshot/BitWords.h"
#include "snapshot/SequentialReader.h"
#include "snapshot/SystemParameters.h"
#include "text/NumberFormat.h"

namespace logbook {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kNotApplicable = "N/A";

const ReportLayout& LayoutOf(ValueReport report) {
  return kReportLayouts.at(static_cast<std::size_t>(report));
}

// The sections of one report while it is built.
class Sections {
 public:
  Sections(const Machine& machine, const ReportLayout& layout)
      : machine_(machine), layout_(layout) {
    for (const SectionHeading& heading : layout.Headings) {
      texts_.emplace_back(LoadResString(heading.String)).append(kLineEnd);
    }
  }

  // Appends the line of a row. A label that fills its field has no blank behind it.
  void Add(std::int16_t group, std::string_view name, std::string_view reading) {
    std::string& text = RowAt(texts_, group - 1);
    const std::size_t width = machine_.code_page->Length(name);
    text.append(" ").append(name);
    if (width < layout_.NameWidth) text.append(layout_.NameWidth - width, ' ');
    text.append(":").append(reading).append(kLineEnd);
  }

  std::string Join(const LogOptions& options) const {
    std::string report;
    for (const JoinStep& step : layout_.Order) {
      if (!step.Condition(options)) continue;
      report += RowAt(texts_, step.Section - 1);
      if (step.After == Behind::kEmptyLine) report += kLineEnd;
    }
    return report;
  }

 private:
  const Machine& machine_;
  const ReportLayout& layout_;
  std::vector<std::string> texts_;  // section n at n - 1
};

// What a report is made from.
struct Source {
  const Catalogues& catalogues;
  const LogOptions& options;
  SequentialReader& snapshot;
};

std::string NumberReading(double number, const ItemRecord& item) {
  return FormatNumber(number, item.Format) + " " + item.Unit;
}

void WalkAnalog(const Source& source, Sections& sections) {
  const std::vector<double> numbers = ReadNumbers(source.snapshot, kAnalogRowCount);
  for (std::int16_t row = 0; row < kAnalogRowCount; ++row) {
    if (IsOmittedAnalogParam(row, source.options)) continue;
    const ItemRecord& item = RowAt(source.catalogues.AnalogItems, row);
    const auto index = static_cast<std::size_t>(row);
    const bool shown =
        index < numbers.size() && !IsDisabledAnalogParam(source.catalogues, row, source.options);
    sections.Add(item.Group, item.Name,
                 shown ? NumberReading(numbers[index], item) : std::string(kNotApplicable));
  }
}

void WalkMeter(const Source& source, Sections& sections) {
  const std::vector<double> numbers = ReadNumbers(source.snapshot, kMeterRowCount);
  for (std::int16_t row = 0; row < kMeterRowCount; ++row) {
    const ItemRecord& item = RowAt(source.catalogues.MeterItems, row);
    const auto index = static_cast<std::size_t>(row);
    const bool shown = index < numbers.size() && !IsDisabledMeterParam(row, source.options);
    sections.Add(item.Group, item.Name,
                 shown ? NumberReading(numbers[index], item) : std::string(kNotApplicable));
  }
}

void WalkSys(const Source& source, Sections& sections) {
  const std::vector<SystemParameter> fields = ReadSystemParameters(source.snapshot);
  for (std::int16_t row = 0; row < kSysRowCount; ++row) {
    if (IsOmittedSysParam(row)) continue;
    const ItemRecord& item = RowAt(source.catalogues.SysItems, row);
    const auto index = static_cast<std::size_t>(row);
    const SystemParameter* field = index < fields.size() ? &fields[index] : nullptr;
    if (field != nullptr && row == kStampRow) {
      sections.Add(item.Group, item.Name, std::get<std::string>(*field));
    } else if (field != nullptr && !IsDisabledSysParam(row, source.options)) {
      sections.Add(item.Group, item.Name, NumberReading(std::get<double>(*field), item));
    } else {
      sections.Add(item.Group, item.Name, kNotApplicable);
    }
  }
}

std::string_view BitReading(const BitWords& words, const BitItemRecord& item) {
  return BitIsSet(RowAt(words, item.Word), item.Mask) ? item.Label1 : item.Label0;
}

void AddBits(const Source& source, std::span<const BitItemRecord> items,
             const std::vector<BitPlace>& places, Sections& sections) {
  const BitWords words = ReadBitWords(source.snapshot);
  for (const BitPlace& place : places) {
    const BitItemRecord& item = RowAt(items, place.Row);
    sections.Add(item.Group, item.Name, place.Disabled ? kNotApplicable : BitReading(words, item));
  }
}

void WalkBitOut(const Source& source, Sections& sections) {
  AddBits(source, source.catalogues.BoutItems, BitOutPlaces(source.options), sections);
}

void WalkBitIn(const Source& source, Sections& sections) {
  AddBits(source, source.catalogues.BinItems, BitInPlaces(source.options), sections);
}

void Walk(ValueReport report, const Source& source, Sections& sections) {
  switch (report) {
    case ValueReport::kAnalog:
      return WalkAnalog(source, sections);
    case ValueReport::kMeter:
      return WalkMeter(source, sections);
    case ValueReport::kSys:
      return WalkSys(source, sections);
    case ValueReport::kBitOut:
      return WalkBitOut(source, sections);
    case ValueReport::kBitIn:
      return WalkBitIn(source, sections);
  }
}

}  // namespace

std::string_view ReportFileName(ValueReport report) {
  return LayoutOf(report).ReportFile;
}

std::string ValueReportText(ReportSource& log, const Catalogues& catalogues, ValueReport report) {
  const ReportLayout& layout = LayoutOf(report);
  const LogOptions& options = log.Options();
  std::optional<SequentialReader> snapshot = log.OpenSnapshot(layout.Snapshot);
  if (!snapshot) return {};
  Sections sections(log.TheMachine(), layout);
  Walk(report, {catalogues, options, *snapshot}, sections);
  return sections.Join(options);
}

std::string ValueReportText(const Machine& machine, const Catalogues& catalogues,
                            ValueReport report, std::string_view log_folder) {
  ReportSource log(machine, log_folder);
  return ValueReportText(log, catalogues, report);
}

std::string ReportFileBytes(const Machine& machine, std::string_view text) {
  return machine.code_page->FromUtf8(text).append(kLineEnd);
}

void WriteReportFile(const Machine& machine, std::string_view log_folder, std::string_view name,
                     std::string_view text) {
  MadeFiles(machine, log_folder).Write(name, ReportFileBytes(machine, text));
}

}  // namespace logbook
