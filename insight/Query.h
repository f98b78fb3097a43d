// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The query language of logbookctl find (docs/insight.md): text in, a tree of conditions out. What
// a name in a query stands for is settled here, so that a query that was read can be answered.
// Pure.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "insight/CatalogueRow.h"
#include "insight/LogReading.h"

namespace logbook::insight {

enum class Comparison { kEqual, kNotEqual, kLess, kLessOrEqual, kGreater, kGreaterOrEqual };

// True if `a` stands so to `b`.
bool Holds(Comparison comparison, double a, double b);

// One condition on a log, or a combination of conditions.
struct Query {
  enum class Kind {
    kEverything,  // an empty query
    kAnd,         // all of Parts
    kOr,          // any of Parts
    kNot,         // not its only part
    kWords,       // Words stand next to each other in comment, a text log or a text value
    kDate,        // From <= date < To
    kTick,        // item Number is ticked
    kOption,      // option Option compares so to Number
    kAutomatic,   // an automatic record
    kRowNumber,   // one of Rows is a number or bit that compares so to Number
    kRowText,     // one of Rows is a text that is (or is not) Text, without regard to case
    kRowState,    // one of Rows is in the state State
  };
  Kind What = Kind::kEverything;
  std::vector<Query> Parts;
  std::vector<std::string> Words;  // as TextWords gives them
  bool LastWordBegins = false;     // the last one is the beginning of a word
  std::optional<std::chrono::local_seconds> From;
  std::optional<std::chrono::local_seconds> To;
  std::vector<RowId> Rows;  // of kRowState: empty for all rows of all catalogues
  Comparison Compare = Comparison::kEqual;
  double Number = 0;
  std::string Text;
  double LogOptions::*Option = nullptr;
  ValueState State = ValueState::kOk;
};

// A query that cannot be read. what() is one sentence without a full stop, such as "a number is
// expected behind >".
class QueryError : public std::runtime_error {
 public:
  QueryError(std::size_t place, const std::string& sentence, std::vector<std::string> near = {})
      : std::runtime_error(sentence), place_(place), near_(std::move(near)) {}

  // The byte of the query text that it stumbled over, from 0; its length if more was expected.
  std::size_t Place() const { return place_; }
  // Names that may have been meant, the nearest first.
  const std::vector<std::string>& Near() const { return near_; }

 private:
  std::size_t place_;
  std::vector<std::string> near_;
};

// The query of a text (UTF-8). Raises QueryError and nothing else.
Query ParseQuery(const Catalogues& catalogues, std::string_view text);

// The error with the query and a mark under the place, for a terminal: some lines, each ended by a
// line feed.
std::string Explain(const QueryError& error, std::string_view query);

}  // namespace logbook::insight
