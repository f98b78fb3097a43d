// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Query.h"

#include <array>

#include "insight/QueryFields.h"
#include "insight/QueryScanner.h"
#include "insight/TextWords.h"
#include "text/TextParts.h"

namespace logbook::insight {
namespace {

// Deeper nesting is refused, so that no query exhausts the stack.
constexpr int kDeepest = 200;

// The grammar, one routine a rule:
//   query = [ or ]      or = and { "OR" and }      and = not { [ "AND" ] not }
//   not = "NOT" not | "(" or ")" | term
class Parser {
 public:
  Parser(const Catalogues& catalogues, std::string_view text)
      : catalogues_(catalogues), scanner_(text) {}

  Query Parse() {
    if (scanner_.AtEnd()) return {};
    Query query = ParseOr();
    if (scanner_.At(')')) throw QueryError(scanner_.Place(), "there is no \"(\" before this \")\"");
    return query;
  }

 private:
  Query ParseOr() {
    Query query = ParseAnd();
    if (!scanner_.AtWord("OR")) return query;
    Query any;
    any.What = Query::Kind::kOr;
    any.Parts.push_back(std::move(query));
    while (scanner_.TakeWord("OR")) any.Parts.push_back(ParseAnd());
    return any;
  }

  Query ParseAnd() {
    Query all;
    all.What = Query::Kind::kAnd;
    all.Parts.push_back(ParseNot());
    while (true) {
      const bool ends = scanner_.AtEnd() || scanner_.At(')') || scanner_.AtWord("OR");
      if (!scanner_.TakeWord("AND") && ends) break;
      all.Parts.push_back(ParseNot());
    }
    if (all.Parts.size() > 1) return all;
    Query only = std::move(all.Parts.front());
    return only;
  }

  Query ParseNot() {
    if (++depth_ > kDeepest) throw QueryError(scanner_.Place(), "the query is nested too deeply");
    Query query = ParseOperand();
    --depth_;
    return query;
  }

  Query ParseOperand() {
    if (scanner_.TakeWord("NOT")) {
      Query query;
      query.What = Query::Kind::kNot;
      query.Parts.push_back(ParseNot());
      return query;
    }
    const std::size_t place = scanner_.Place();
    if (scanner_.Take('(')) {
      Query query = ParseOr();
      if (!scanner_.Take(')')) {
        throw QueryError(scanner_.Place(), "a \")\" is expected for the \"(\" at character " +
                                               std::to_string(scanner_.CharacterAt(place)));
      }
      return query;
    }
    ExpectCondition();
    return ParseCondition(catalogues_, scanner_);
  }

  void ExpectCondition() {
    const bool operation = scanner_.AtWord("AND") || scanner_.AtWord("OR");
    if (scanner_.AtEnd() || scanner_.At(')') || operation) {
      throw QueryError(scanner_.Place(),
                       "a word, a \"phrase\", a condition or \"(\" is expected here");
    }
  }

  const Catalogues& catalogues_;
  QueryScanner scanner_;
  int depth_ = 0;
};

// A blank in place of each control character.
std::string InOneLine(std::string_view text) {
  std::string line(text);
  for (char& byte : line) {
    if (static_cast<unsigned char>(byte) < ' ') byte = ' ';
  }
  return line;
}

}  // namespace

bool Holds(Comparison comparison, double a, double b) {
  switch (comparison) {
    case Comparison::kEqual:
      return a == b;
    case Comparison::kNotEqual:
      return a != b;
    case Comparison::kLess:
      return a < b;
    case Comparison::kLessOrEqual:
      return a <= b;
    case Comparison::kGreater:
      return a > b;
    case Comparison::kGreaterOrEqual:
      return a >= b;
  }
  return false;
}

Query ParseQuery(const Catalogues& catalogues, std::string_view text) {
  return Parser(catalogues, text).Parse();
}

std::string Explain(const QueryError& error, std::string_view query) {
  const QueryScanner scanner(query);
  const std::size_t character = scanner.CharacterAt(error.Place());
  // The sentence may repeat a part of the query.
  std::string text = "character " + std::to_string(character) + ": " + InOneLine(error.what()) +
                     "\n  " + InOneLine(query) + "\n  " + std::string(character - 1, ' ') + "^\n";
  if (error.Near().empty()) return text;
  text += "near:";
  for (const std::string& name : error.Near()) {
    text += (&name == &error.Near().front() ? " \"" : ", \"") + name + "\"";
  }
  return text + "\n";
}

}  // namespace logbook::insight
