// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What is different between two logs: options of the instrument, rows that apply to one of them
// only, values that are missing in one, and values that differ by more than a tolerance. Dates,
// ticks and comments are told and are no differences. Pure; none raises anything.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/ItemRecord.h"
#include "insight/CatalogueRow.h"
#include "insight/LogReading.h"
#include "insight/SettingsText.h"

namespace logbook::insight {

// How far two numbers of a row may lie apart without being different. Per cent are of the greater
// magnitude of the two, so that it does not matter which log is the old one.
struct Tolerances {
  Amount everywhere;           // 0 unless set
  std::map<int, Amount> rows;  // by PlaceOf; in place of the former

  const Amount& For(const RowId& id) const;
};

struct ChangedOption {
  std::string_view key;
  double left = 0;
  double right = 0;
};

struct ChangedRow {
  RowId id;
  RowValue left;
  RowValue right;
  std::optional<double> difference;  // right - left, where both are numbers
  std::optional<double> percent;     // of the magnitude of left; nothing where that is 0
};

enum class Side { kLeft, kRight };

// A catalogue of which one log has no file while the other has values: told as one.
struct MissingCatalogue {
  Catalogue which = Catalogue::kMeter;
  Side side = Side::kLeft;  // where the file is missing
};

// What stands on top of a comparison.
struct LogHead {
  LogIdentity identity;
  bool automatic = false;
  std::vector<std::string> ticks;  // labels
  std::string comment;             // lines joined by line feeds
};

struct LogDifference {
  LogHead left;   // the old one
  LogHead right;  // the new one
  std::vector<ChangedOption> options;
  std::vector<ChangedRow> applicability;  // rows that read "N/A" in one of the two only
  std::vector<MissingCatalogue> missing;
  std::vector<ChangedRow> values;  // in the order of catalogues and rows

  bool Different() const {
    return !options.empty() || !applicability.empty() || !missing.empty() || !values.empty();
  }
};

LogDifference CompareLogs(const Catalogues& catalogues, const LogReading& left,
                          const LogReading& right, const Tolerances& tolerances);

// True if two values of a row count as equal: same state, and for numbers a distance within the
// tolerance, with what decimals lose as binary numbers forgiven if there is one at all.
bool CountAsEqual(const RowValue& left, const RowValue& right, const Amount& tolerance);

}  // namespace logbook::insight
