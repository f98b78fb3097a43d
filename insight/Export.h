// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Readings of logs given to other programs (docs/insight.md): one log after the other, so that any
// number of logs takes the memory of one. In the long shape every value is an entry of its own; in
// the wide shape every log is one, with a column for each row of each catalogue.
#pragma once

#include <array>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/CatalogueRow.h"
#include "insight/LogReading.h"

namespace logbook::insight {

// An export that cannot be written; the message says why.
class ExportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class ExportFormat { kCsv, kJsonLines, kXlsx, kSqlite };
enum class ExportShape { kLong, kWide };

inline constexpr auto kExportFormats =
    std::to_array<std::string_view>({"csv", "jsonl", "xlsx", "sqlite"});

// Whether the root of each log is told; worth it where there are several.
enum class RootColumn { kWithout, kWith };

// Takes readings and writes them. All members raise ExportError when the target cannot be written.
class Exporter {
 public:
  virtual ~Exporter() = default;
  virtual void Add(const LogReading& reading) = 0;
  // Completes what is written. Nothing may be added afterwards.
  virtual void Finish() = 0;
};

// RFC 4180 in UTF-8; texts of people and files are made harmless for programs that take a field for
// a formula (Neutralised).
std::unique_ptr<Exporter> MakeCsvExporter(std::ostream& out, const Catalogues& catalogues,
                                          ExportShape shape, RootColumn root);

// A JSON object a line.
std::unique_ptr<Exporter> MakeJsonLinesExporter(std::ostream& out, const Catalogues& catalogues,
                                                ExportShape shape, RootColumn root);

// A workbook at this native path, with typed cells and a header that stays in sight: in the wide
// shape a sheet of the logs and one a catalogue, in the long shape sheets of values. Texts that are
// longer than a cell may be are cut.
std::unique_ptr<Exporter> MakeXlsxExporter(const std::string& native_path,
                                           const Catalogues& catalogues, ExportShape shape,
                                           RootColumn root);

// A database at this native path, which must not exist; one transaction.
std::unique_ptr<Exporter> MakeSqliteExporter(const std::string& native_path,
                                             const Catalogues& catalogues, ExportShape shape);

// One entry of the long shape. What a log holds besides catalogue rows comes in catalogues of its
// own: "log" (0 the comment, 1 whether it is automatic), "tick" (the items 0 to 17), "option" (the
// keys of section "OPTION").
struct ExportCell {
  std::string_view catalogue;
  int row = 0;
  std::string_view label;
  std::string_view unit;
  std::string_view section;
  std::optional<double> value;  // of numbers and bits that have one
  std::string_view text;        // as list and report print it
  std::string_view state;
  bool foreign = false;  // the text was written by people or other programs
};

// The rows of all catalogues, described once.
class ExportRows {
 public:
  explicit ExportRows(const Catalogues& catalogues);

  // All entries of a log: log, ticks, options, then the catalogues. The cell is good for the call.
  void ForEach(const LogReading& reading, const std::function<void(const ExportCell&)>& use) const;

  // By PlaceOf.
  const RowInfo& InfoAt(int place) const { return infos_[static_cast<std::size_t>(place)]; }
  // The title of a row's column: "63 Oxide (%)".
  std::string TitleAt(int place) const;
  const std::vector<std::string>& TickLabels() const { return ticks_; }
  const Catalogues& AllCatalogues() const { return catalogues_; }

 private:
  void ForEachRow(const LogReading& reading,
                  const std::function<void(const ExportCell&)>& use) const;

  const Catalogues& catalogues_;
  std::vector<RowInfo> infos_;
  std::vector<std::string> ticks_;
};

// "2026-11-15T05:09:59", or the date text as it stands where it is no date.
std::string ExportDate(const LogReading& reading);

// The fingerprint as 16 hexadecimal digits.
std::string FingerprintText(const LogIdentity& identity);

}  // namespace logbook::insight
