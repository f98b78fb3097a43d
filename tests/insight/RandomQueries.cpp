// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "RandomQueries.h"

#include <cstdio>

#include "AllCatalogues.h"
#include "insight/RowNames.h"

namespace logbook::test {

using namespace insight;

std::string RandomQueries::Combination(int depth) {
  switch (depth == 0 ? 9 : Pick(9)) {
    case 0:
    case 1:
      return Combination(depth - 1) + " " + Combination(depth - 1);
    case 2:
      return "(" + Combination(depth - 1) + " OR " + Combination(depth - 1) + ")";
    case 3:
      return "NOT " + Combination(depth - 1);
    case 4:
      return "(" + Combination(depth - 1) + " AND NOT (" + Combination(depth - 1) + "))";
    default:
      return Condition();
  }
}

std::string RandomQueries::Condition() {
  switch (Pick(9)) {
    case 0:
    case 1:
      return Words();
    case 2:
      return Date();
    case 3:
      return "tick:" + std::to_string(Pick(17));
    case 4:
      return "option:" + std::string(kOptionKeys[static_cast<std::size_t>(Pick(11))].Key) +
             Comparison() + std::to_string(Pick(2));
    case 5:
      return Pick(1) == 0 ? "auto:yes" : "auto:no";
    case 6:
      return "state:" + std::string(NameOf(static_cast<ValueState>(Pick(4))));
    default:
      return Row();
  }
}

std::string RandomQueries::Words() {
  const std::vector<std::string>& words = Log().Words;
  if (words.empty()) return "nothing";
  const int last = static_cast<int>(words.size()) - 1;
  const int first = Pick(last);
  std::string phrase = "\"";
  for (int i = first; i <= std::min(last, first + Pick(2)); ++i) {
    if (words[static_cast<std::size_t>(i)] == "\x01") continue;
    phrase += (phrase.size() == 1 ? "" : " ") + words[static_cast<std::size_t>(i)];
  }
  if (phrase == "\"") return "nothing";
  if (Pick(3) > 0) return phrase + "\"";
  // Half a character at the end is no word.
  if (phrase.size() > 3 && static_cast<unsigned char>(phrase.back()) < 0x80) phrase.pop_back();
  return phrase + "\"*";
}

std::string RandomQueries::Date() {
  const auto& date = Log().Reading.Date;
  if (!date) return "after:2024";
  const auto day = std::chrono::floor<std::chrono::days>(*date);
  const std::chrono::year_month_day parts(day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(parts.year()),
                static_cast<unsigned>(parts.month()), static_cast<unsigned>(parts.day()));
  static const char* const kFields[] = {"after:", "before:", "on:"};
  return kFields[Pick(2)] + std::string(text).substr(0, Pick(3) == 0 ? 7 : 10);
}

std::string RandomQueries::Comparison() {
  static const char* const kSigns[] = {"=", "!=", "<", "<=", ">", ">="};
  return kSigns[Pick(5)];
}

std::string RandomQueries::Row() {
  const RowId id = RowAtPlace(Pick(kAllRows - 1));
  const RowInfo info = DescribeRow(AllCatalogues(), id);
  std::string name = NameOf(id);
  // By its label, where that is not a number and not the beginning of others.
  if (Pick(2) == 0 && info.Label.find('"') == std::string::npos) {
    name = std::string(InfoOf(id.Which).Name) + ":\"" + info.Label + "\"";
  }
  const int form = Pick(5);
  if (form == 0) return name;
  if (form == 1) {
    return name + ":" + std::string(insight::NameOf(static_cast<ValueState>(Pick(4))));
  }
  const RowValue& value = Log().Reading.At(id);
  if (info.Kind == RowKind::kBit)
    return name + (Pick(1) == 0 ? "=" : "!=") + std::to_string(Pick(1));
  if (info.Kind == RowKind::kText)
    return name + (Pick(1) == 0 ? "=" : "!=") + "\"" + value.Text + "\"";
  char number[64];
  std::snprintf(number, sizeof number, "%.17g", value.Number);
  return name + Comparison() + number;
}

}  // namespace logbook::test
