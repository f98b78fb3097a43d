// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/DifferenceRows.h"

#include <algorithm>

#include "insight/Axis.h"
#include "insight/Csv.h"
#include "insight/Trend.h"

namespace logbook::insight {
namespace {

std::string_view StateWords(ValueState state) {
  switch (state) {
    case ValueState::kOk:
      return "";
    case ValueState::kNotApplicable:
      return "N/A";
    case ValueState::kFileMissing:
      return "file missing";
    case ValueState::kFileShort:
      return "not in the file";
    case ValueState::kNoNumber:
      return "no number";
  }
  return "";
}

std::string WithUnit(std::string text, const RowInfo& info) {
  if (!info.Unit.empty()) text += " " + info.Unit;
  return text;
}

std::string ValueWords(const Catalogues& catalogues, const ChangedRow& row, const RowInfo& info,
                       const RowValue& value, bool exact) {
  if (value.State != ValueState::kOk) return std::string(StateWords(value.State));
  if (info.Kind == RowKind::kText) return "\"" + value.Text + "\"";
  if (exact) return WithUnit(ExactNumber(value.Number), info);
  return WithUnit(PrintedText(catalogues, row.id, value), info);
}

RowWords Words(const Catalogues& catalogues, const ChangedRow& row) {
  constexpr int kDigits = 5;
  constexpr int kPercentDigits = 3;
  const RowInfo info = DescribeRow(catalogues, row.id);
  RowWords words;
  words.section = std::string(InfoOf(row.id.Which).Title) + ", " + info.Section;
  words.label = info.Label;
  const bool alike =
      row.difference && info.Kind == RowKind::kNumber &&
      PrintedText(catalogues, row.id, row.left) == PrintedText(catalogues, row.id, row.right);
  words.left = ValueWords(catalogues, row, info, row.left, alike);
  words.right = ValueWords(catalogues, row, info, row.right, alike);
  if (row.difference && info.Kind == RowKind::kNumber) {
    words.difference = SignedNumber(*row.difference, kDigits);
  }
  if (row.percent) words.percent = SignedNumber(*row.percent, kPercentDigits) + " %";
  return words;
}

}  // namespace

std::vector<RowWords> WordsOf(const Catalogues& catalogues, const std::vector<ChangedRow>& rows) {
  std::vector<RowWords> words;
  for (const ChangedRow& row : rows) {
    RowWords next = Words(catalogues, row);
    const auto last = std::find_if(words.rbegin(), words.rend(), [&](const RowWords& each) {
      return each.section == next.section;
    });
    words.insert(last == words.rend() ? words.end() : last.base(), std::move(next));
  }
  return words;
}

std::string WordsOf(const MissingCatalogue& missing) {
  return std::string(InfoOf(missing.which).Title) + ": no file in the " +
         (missing.side == Side::kLeft ? "old" : "new") + " log";
}

std::string WordsOf(const LogHead& head) {
  return head.identity.Folder + "  " +
         (head.identity.Date.empty() ? "no date" : head.identity.Date) +
         (head.automatic ? "  automatic" : "");
}

std::string TickWords(const LogHead& head) {
  std::string text;
  for (const std::string& tick : head.ticks) text += (text.empty() ? "" : ", ") + tick;
  return text.empty() ? "none" : text;
}

}  // namespace logbook::insight
