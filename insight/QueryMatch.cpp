// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/QueryMatch.h"

#include <algorithm>

#include "base/UpperCase.h"
#include "insight/TextWords.h"

namespace logbook::insight {
namespace {

bool MatchesDate(const Query& query, const LogReading& reading) {
  if (!reading.Date) return false;
  return (!query.From || *reading.Date >= *query.From) && (!query.To || *reading.Date < *query.To);
}

bool MatchesNumber(const Query& query, const RowValue& value) {
  return value.State == ValueState::kOk && Holds(query.Compare, value.Number, query.Number);
}

bool MatchesText(const Query& query, const RowValue& value) {
  return value.State == ValueState::kOk &&
         EqualIgnoringCase(value.Text, query.Text) == (query.Compare == Comparison::kEqual);
}

bool MatchesRow(const Query& query, const LogReading& reading) {
  const auto holds = [&](const RowValue& value) {
    if (query.What == Query::Kind::kRowNumber) return MatchesNumber(query, value);
    if (query.What == Query::Kind::kRowText) return MatchesText(query, value);
    return value.State == query.State;
  };
  if (query.Rows.empty()) {
    return std::any_of(reading.Values.begin(), reading.Values.end(), holds);
  }
  return std::any_of(query.Rows.begin(), query.Rows.end(),
                     [&](const RowId& id) { return holds(reading.At(id)); });
}

}  // namespace

std::string SearchedText(const CodePage& code_page, const Catalogues& catalogues,
                         const LogFiles& files, const LogReading& reading) {
  std::string text = reading.Comment;
  for (const std::string_view name : kTextLogs) {
    const LogFile* file = files.Find(name);
    if (file == nullptr || file->Bytes.empty()) continue;
    text.append(kTextBreak).append(code_page.ToUtf8(file->Bytes));
  }
  for (const CatalogueInfo& each : kCatalogues) {
    if (each.Which != Catalogue::kTune && each.Which != Catalogue::kSys) continue;
    for (RowId id = {each.Which, 0}; id.Row < each.Rows; ++id.Row) {
      if (KindOf(catalogues, id) != RowKind::kText) continue;
      text.append(kTextBreak).append(reading.At(id).Text);
    }
  }
  return text;
}

bool Matches(const Query& query, const SearchedLog& log) {
  const auto matches = [&](const Query& part) { return Matches(part, log); };
  switch (query.What) {
    case Query::Kind::kEverything:
      return true;
    case Query::Kind::kAnd:
      return std::all_of(query.Parts.begin(), query.Parts.end(), matches);
    case Query::Kind::kOr:
      return std::any_of(query.Parts.begin(), query.Parts.end(), matches);
    case Query::Kind::kNot:
      return !matches(query.Parts.front());
    case Query::Kind::kWords:
      return HoldsPhrase(log.Words, query.Words, query.LastWordBegins);
    case Query::Kind::kDate:
      return MatchesDate(query, log.Reading);
    case Query::Kind::kTick:
      return log.Reading.Ticks[static_cast<std::size_t>(query.Number)];
    case Query::Kind::kOption:
      return Holds(query.Compare, log.Reading.Options.*query.Option, query.Number);
    case Query::Kind::kAutomatic:
      return log.Reading.Automatic;
    case Query::Kind::kRowNumber:
    case Query::Kind::kRowText:
    case Query::Kind::kRowState:
      return MatchesRow(query, log.Reading);
  }
  return false;
}

}  // namespace logbook::insight
