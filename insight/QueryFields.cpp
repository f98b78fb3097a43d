// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/QueryFields.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/UpperCase.h"
#include "insight/DatePart.h"
#include "insight/RowNames.h"
#include "insight/TextWords.h"

namespace logbook::insight {
namespace {

constexpr std::string_view kSigns = "=!<>:";

// clang-format off
struct Sign {
  std::string_view text;
  Comparison comparison;
};
// The longer ones first.
constexpr auto kComparisons = std::to_array<Sign>({
    {">=", Comparison::kGreaterOrEqual}, {"<=", Comparison::kLessOrEqual},
    {"!=", Comparison::kNotEqual},       {"=", Comparison::kEqual},
    {">", Comparison::kGreater},         {"<", Comparison::kLess},
});
// clang-format on

bool IsLetter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

// A text in quotes or without.
std::string TakeText(QueryScanner& scanner, std::string_view ends) {
  return scanner.At('"') ? scanner.TakeQuoted() : scanner.TakeRun(ends);
}

std::optional<Comparison> TakeComparison(QueryScanner& scanner) {
  const std::string_view run = scanner.Run({});
  for (const Sign& sign : kComparisons) {
    if (!run.starts_with(sign.text)) continue;
    for (std::size_t i = 0; i < sign.text.size(); ++i) scanner.Take(sign.text[i]);
    return sign.comparison;
  }
  return std::nullopt;
}

Query WordsQuery(std::size_t place, std::string_view text) {
  Query query;
  query.What = Query::Kind::kWords;
  query.LastWordBegins = text.ends_with('*');
  query.Words = WordsOf(text);
  // Nobody can look for the break between texts.
  std::erase(query.Words, "\x01");
  if (query.Words.empty()) {
    throw QueryError(place, "there is no letter or digit to look for in this");
  }
  return query;
}

// --- dates ----------------------------------------------------------------------------------

Query ParseDate(std::string_view field, QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  const std::string text = TakeText(scanner, {});
  const std::optional<DatePart> part = ParseDatePart(text);
  if (!part) {
    throw QueryError(place,
                     "a date is expected here: YYYY, YYYY-MM, YYYY-MM-DD or "
                     "YYYY-MM-DDTHH:MM");
  }
  Query query;
  query.What = Query::Kind::kDate;
  if (field != "before") query.From = part->Begin;
  if (field != "after") query.To = field == "before" ? part->Begin : part->End;
  return query;
}

// --- ticks, options, kinds of records -------------------------------------------------------

Query ParseTick(QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  const TickSearch search = FindTick(TakeText(scanner, {}));
  if (!search.Item) throw QueryError(place, search.Problem, search.Near);
  Query query;
  query.What = Query::Kind::kTick;
  query.Number = *search.Item;
  return query;
}

std::optional<double> WholeTextNumber(std::string_view text) {
  double number = 0;
  if (text.starts_with('+')) text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

Query ParseOption(QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  const std::string name = TakeText(scanner, kSigns);
  const auto found =
      std::find_if(kOptionKeys.begin(), kOptionKeys.end(),
                   [&](const OptionKey& each) { return EqualIgnoringCase(each.Key, name); });
  if (found == kOptionKeys.end()) {
    std::vector<std::string> names;
    names.reserve(kOptionKeys.size());
    for (const OptionKey& each : kOptionKeys) names.emplace_back(each.Key);
    std::vector<std::string> near = NearNames(name, names);
    throw QueryError(place, "no option is called \"" + name + "\"",
                     near.empty() ? std::move(names) : std::move(near));
  }
  Query query;
  query.What = Query::Kind::kOption;
  query.Option = found->Member;
  query.Compare = Comparison::kNotEqual;
  if (const std::optional<Comparison> comparison = TakeComparison(scanner)) {
    const std::size_t number_place = scanner.Place();
    const std::optional<double> number = WholeTextNumber(TakeText(scanner, {}));
    if (!number) throw QueryError(number_place, "a number is expected here");
    query.Compare = *comparison;
    query.Number = *number;
  }
  return query;
}

Query ParseAutomatic(QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  const std::string answer = TakeText(scanner, {});
  if (answer != "yes" && answer != "no") {
    throw QueryError(place, "\"yes\" or \"no\" is expected here");
  }
  Query query;
  query.What = Query::Kind::kAutomatic;
  if (answer == "yes") return query;
  Query negation;
  negation.What = Query::Kind::kNot;
  negation.Parts.push_back(std::move(query));
  return negation;
}

ValueState TakeState(QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  const std::optional<ValueState> state = FindState(TakeText(scanner, {}));
  if (!state) {
    throw QueryError(place, "a state is expected here",
                     {"ok", "na", "missing", "short", "nonumber"});
  }
  return *state;
}

// --- values of the catalogues ---------------------------------------------------------------

// Passes blanks if a sign of comparison stands behind them.
void PassBlanksBeforeComparison(QueryScanner& scanner) {
  QueryScanner ahead = scanner;
  ahead.PassBlanks();
  const bool comparison = ahead.At('=') || ahead.At('!') || ahead.At('<') || ahead.At('>');
  if (comparison) scanner = ahead;
}

// Passes the unit of a row, if it stands apart behind the number.
void PassUnit(QueryScanner& scanner, std::string_view unit) {
  QueryScanner ahead = scanner;
  ahead.PassBlanks();
  if (!unit.empty() && EqualIgnoringCase(ahead.TakeRun({}), unit)) scanner = ahead;
}

// The number of a condition, with the unit that the row has or without.
double TakeNumber(QueryScanner& scanner, const RowInfo& row) {
  const std::size_t place = scanner.Place();
  const std::string text = TakeText(scanner, {});
  const char* begin = text.data() + (text.starts_with('+') ? 1 : 0);
  double number = 0;
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), number);
  if (error != std::errc() || !std::isfinite(number)) {
    throw QueryError(place, "a number is expected here");
  }
  std::string_view unit = text;
  unit.remove_prefix(static_cast<std::size_t>(end - text.data()));
  while (unit.starts_with(' ')) unit.remove_prefix(1);
  if (!unit.empty() && !EqualIgnoringCase(unit, row.Unit)) {
    throw QueryError(place, row.Unit.empty()
                                ? "\"" + row.Label + "\" has no unit"
                                : "the unit of \"" + row.Label + "\" is \"" + row.Unit + "\"");
  }
  if (unit.empty()) PassUnit(scanner, row.Unit);
  return number;
}

// A bit is compared to one of its readings, or to 0 and 1.
double TakeBit(QueryScanner& scanner, const RowInfo& row) {
  const std::size_t place = scanner.Place();
  const std::string text = TakeText(scanner, {});
  if (text == "0" || EqualIgnoringCase(text, row.Label0)) return 0;
  if (text == "1" || EqualIgnoringCase(text, row.Label1)) return 1;
  throw QueryError(place, "\"" + row.Label + "\" reads one of two words", {row.Label0, row.Label1});
}

// The rows of a name can differ in kind only between catalogues, and a condition is on one.
Query ParseComparison(QueryScanner& scanner, std::size_t sign_place, Comparison comparison,
                      const RowInfo& row) {
  Query query;
  query.What = Query::Kind::kRowNumber;
  query.Compare = comparison;
  const bool equality = comparison == Comparison::kEqual || comparison == Comparison::kNotEqual;
  if (row.Kind == RowKind::kNumber) {
    query.Number = TakeNumber(scanner, row);
    return query;
  }
  if (!equality) {
    throw QueryError(sign_place, "\"" + row.Label +
                                     "\" is no number, so \"=\" or \"!=\" is "
                                     "expected here");
  }
  if (row.Kind == RowKind::kBit) {
    query.Number = TakeBit(scanner, row);
    return query;
  }
  query.What = Query::Kind::kRowText;
  query.Text = TakeText(scanner, {});
  return query;
}

Query ParseRow(const Catalogues& catalogues, Catalogue which, QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  const std::string name = TakeText(scanner, kSigns);
  if (name.empty()) throw QueryError(place, "a label or a row number is expected here");
  RowSearch search = FindRows(catalogues, which, name);
  if (search.Rows.empty()) throw QueryError(place, search.Problem, search.Near);
  Query query;
  query.What = Query::Kind::kRowState;
  PassBlanksBeforeComparison(scanner);
  const std::size_t sign_place = scanner.Place();
  if (scanner.At(':')) {
    scanner.Take(':');
    query.State = TakeState(scanner);
  } else if (const std::optional<Comparison> comparison = TakeComparison(scanner)) {
    query = ParseComparison(scanner, sign_place, *comparison,
                            DescribeRow(catalogues, search.Rows.front()));
  }
  query.Rows = std::move(search.Rows);
  return query;
}

Query ParseState(QueryScanner& scanner) {
  Query query;
  query.What = Query::Kind::kRowState;
  query.State = TakeState(scanner);
  return query;
}

// --- fields ---------------------------------------------------------------------------------

std::vector<std::string> FieldNames() {
  std::vector<std::string> names = {"after", "before", "on", "tick", "option", "auto", "state"};
  for (const CatalogueInfo& each : kCatalogues) names.emplace_back(each.Name);
  return names;
}

Query ParseField(const Catalogues& catalogues, std::size_t place, const std::string& field,
                 QueryScanner& scanner) {
  if (field == "after" || field == "before" || field == "on") return ParseDate(field, scanner);
  if (field == "tick") return ParseTick(scanner);
  if (field == "option") return ParseOption(scanner);
  if (field == "auto") return ParseAutomatic(scanner);
  if (field == "state") return ParseState(scanner);
  if (const std::optional<Catalogue> which = FindCatalogue(field)) {
    return ParseRow(catalogues, *which, scanner);
  }
  std::vector<std::string> names = FieldNames();
  std::vector<std::string> near = NearNames(field, names);
  throw QueryError(place,
                   "no field is called \"" + field +
                       "\"; to look for these words, put them in "
                       "quotes",
                   near.empty() ? std::move(names) : std::move(near));
}

// True if a word in front reads FIELD: with letters alone.
bool AtField(const QueryScanner& scanner) {
  const std::string_view run = scanner.Run({});
  const std::size_t colon = run.find(':');
  return colon != std::string_view::npos && colon > 1 &&
         std::all_of(run.begin(), run.begin() + static_cast<std::ptrdiff_t>(colon), IsLetter);
}

void ExpectEndOfCondition(const QueryScanner& scanner, std::size_t behind) {
  const bool apart = scanner.Place() > behind || scanner.AtEnd() || scanner.At(')');
  if (!apart) throw QueryError(scanner.Place(), "a blank is expected here");
}

}  // namespace

Query ParseCondition(const Catalogues& catalogues, QueryScanner& scanner) {
  const std::size_t place = scanner.Place();
  Query query;
  if (scanner.At('"')) {
    std::string phrase = scanner.TakeQuoted();
    if (scanner.At('*')) phrase += scanner.TakeRun({});
    query = WordsQuery(place, phrase);
  } else if (AtField(scanner)) {
    const std::string field = scanner.TakeRun(":");
    scanner.Take(':');
    query = ParseField(catalogues, place, field, scanner);
  } else {
    query = WordsQuery(place, scanner.TakeRun({}));
  }
  const std::size_t behind = scanner.Place();
  scanner.PassBlanks();
  ExpectEndOfCondition(scanner, behind);
  return query;
}

}  // namespace logbook::insight
