// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Difference.h"

#include <algorithm>
#include <cmath>

#include "insight/RowNames.h"
#include "insight/Upkeep.h"

namespace logbook::insight {
namespace {

bool IsOk(const RowValue& value) {
  return value.State == ValueState::kOk;
}

bool IsMissing(const RowValue& value) {
  return value.State == ValueState::kFileMissing;
}

bool Applies(const RowValue& value) {
  return value.State != ValueState::kNotApplicable;
}

LogHead HeadOf(const LogReading& reading) {
  LogHead head{reading.Identity, reading.Automatic, {}, reading.Comment};
  const std::vector<std::string> labels = TickLabels();
  for (std::size_t i = 0; i < labels.size(); ++i) {
    if (reading.Ticks[i]) head.ticks.push_back(labels[i]);
  }
  return head;
}

ChangedRow Change(const Catalogues& catalogues, const RowId& id, const RowValue& left,
                  const RowValue& right) {
  ChangedRow row{id, left, right, {}, {}};
  if (!IsOk(left) || !IsOk(right) || KindOf(catalogues, id) == RowKind::kText) return row;
  row.difference = right.Number - left.Number;
  if (left.Number != 0 && KindOf(catalogues, id) == RowKind::kNumber) {
    row.percent = *row.difference / std::abs(left.Number) * 100;
  }
  return row;
}

// True if the one log has no file for any row of the catalogue, and the other has a value.
bool LacksCatalogue(const CatalogueInfo& info, const LogReading& one, const LogReading& other) {
  bool any_value = false;
  for (int row = 0; row < info.Rows; ++row) {
    const RowId id{info.Which, row};
    if (Applies(one.At(id)) && !IsMissing(one.At(id))) return false;
    any_value |= IsOk(other.At(id));
  }
  return any_value;
}

class LogComparison {
 public:
  LogComparison(const Catalogues& catalogues, const LogReading& left, const LogReading& right,
                const Tolerances& tolerances)
      : catalogues_(catalogues), left_(left), right_(right), tolerances_(tolerances) {}

  LogDifference Compare() {
    result_.left = HeadOf(left_);
    result_.right = HeadOf(right_);
    CompareOptions();
    for (const CatalogueInfo& info : kCatalogues) CompareCatalogue(info);
    return std::move(result_);
  }

 private:
  void CompareOptions() {
    for (const OptionKey& option : kOptionKeys) {
      const double left = left_.Options.*option.Member;
      const double right = right_.Options.*option.Member;
      if (left != right) result_.options.push_back({option.Key, left, right});
    }
  }

  void CompareCatalogue(const CatalogueInfo& info) {
    const bool left_lacks = LacksCatalogue(info, left_, right_);
    const bool right_lacks = LacksCatalogue(info, right_, left_);
    if (left_lacks) result_.missing.push_back({info.Which, Side::kLeft});
    if (right_lacks) result_.missing.push_back({info.Which, Side::kRight});
    for (int row = 0; row < info.Rows; ++row) {
      CompareRow({info.Which, row}, left_lacks || right_lacks);
    }
  }

  void CompareRow(const RowId& id, bool told_as_missing) {
    const RowValue& left = left_.At(id);
    const RowValue& right = right_.At(id);
    if (Applies(left) != Applies(right)) {
      // Where a file is missing nobody can say more than that.
      if (IsMissing(left) || IsMissing(right)) return;
      result_.applicability.push_back(Change(catalogues_, id, left, right));
    } else if (!told_as_missing && !CountAsEqual(left, right, tolerances_.For(id))) {
      result_.values.push_back(Change(catalogues_, id, left, right));
    }
  }

  const Catalogues& catalogues_;
  const LogReading& left_;
  const LogReading& right_;
  const Tolerances& tolerances_;
  LogDifference result_;
};

}  // namespace

const Amount& Tolerances::For(const RowId& id) const {
  const auto row = rows.find(PlaceOf(id));
  return row == rows.end() ? everywhere : row->second;
}

bool CountAsEqual(const RowValue& left, const RowValue& right, const Amount& tolerance) {
  if (left.State != right.State || left.Text != right.Text) return false;
  const double greater = std::max(std::abs(left.Number), std::abs(right.Number));
  const double allowed = tolerance.Of(greater);
  const double slack = allowed > 0 ? greater * 1e-12 : 0;
  return std::abs(right.Number - left.Number) <= allowed + slack;
}

LogDifference CompareLogs(const Catalogues& catalogues, const LogReading& left,
                          const LogReading& right, const Tolerances& tolerances) {
  return LogComparison(catalogues, left, right, tolerances).Compare();
}

}  // namespace logbook::insight
