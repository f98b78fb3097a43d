// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/IndexSearch.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <unordered_set>

#include "base/UpperCase.h"

namespace logbook::insight {
namespace {

// One place for each log; 1 for a log that answers.
using Answers = std::vector<char>;

// Beyond this a double holds not every whole number.
constexpr double kMostWhole = 9e15;

[[noreturn]] void RaiseDamage() {
  throw IndexError(IndexError::Kind::kDamaged, "the index is damaged");
}

// How many logs the index has room for, by the last block of them.
std::size_t CountLogs(IndexStore& store) {
  const std::int64_t next = store.NextId();
  if (next == 0) return 0;
  const std::int64_t last = next - 1;
  const ValueColumn live = store.Column(last / kBlockLogs, static_cast<int>(SpecialColumn::kLive));
  if (live.States.size() != static_cast<std::size_t>(last % kBlockLogs) + 1) RaiseDamage();
  return static_cast<std::size_t>(next);
}

class Searcher {
 public:
  Searcher(IndexStore& store, const Catalogues& catalogues, const FindRequest& request)
      : store_(store), catalogues_(catalogues), request_(request), count_(CountLogs(store)) {}

  FindResult Run() {
    Answers answers = Evaluate(request_.What);
    const ValueColumn& live = Special(SpecialColumn::kLive);
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < count_; ++i) {
      if (answers[i] != 0 && live.States[i] == 1) found.push_back(i);
    }
    FindResult result;
    result.Count = found.size();
    Sort(found);
    if (found.size() > request_.Limit) found.resize(request_.Limit);
    result.Logs.reserve(found.size());
    for (const std::size_t log : found) result.Logs.push_back(Describe(log));
    return result;
  }

 private:
  // --- columns

  // A whole column over all logs, read once.
  const ValueColumn& Column(int number) {
    const auto known = columns_.find(number);
    if (known != columns_.end()) return known->second;
    ValueColumn whole;
    whole.States.reserve(count_);
    whole.Numbers.reserve(count_);
    for (std::size_t first = 0; first < count_; first += kBlockLogs) {
      const ValueColumn part = store_.Column(static_cast<std::int64_t>(first / kBlockLogs), number);
      const std::size_t size = std::min<std::size_t>(kBlockLogs, count_ - first);
      if (part.States.size() != size || !IsSound(number, part)) RaiseDamage();
      whole.States.insert(whole.States.end(), part.States.begin(), part.States.end());
      whole.Numbers.insert(whole.Numbers.end(), part.Numbers.begin(), part.Numbers.end());
    }
    return columns_.emplace(number, std::move(whole)).first->second;
  }
  // States that are some, and numbers that are whole where they stand for texts, dates and bits.
  bool IsSound(int number, const ValueColumn& part) const {
    const auto all = [](const auto& each, auto holds) {
      return std::all_of(each.begin(), each.end(), holds);
    };
    const bool is_row = number < kAllRows;
    if (is_row && !all(part.States, [](std::uint8_t state) {
          return state <= static_cast<std::uint8_t>(ValueState::kNoNumber);
        })) {
      return false;
    }
    if (is_row ? KindOf(catalogues_, RowAtPlace(number)) == RowKind::kText
               : number == static_cast<int>(SpecialColumn::kDate)) {
      return all(part.Numbers, [](double each) { return std::fabs(each) < kMostWhole; });
    }
    if (number == static_cast<int>(SpecialColumn::kTicks) ||
        number == static_cast<int>(SpecialColumn::kStates)) {
      return all(part.Numbers, [](double each) { return each >= 0 && each < 4294967296.0; });
    }
    return true;
  }
  const ValueColumn& Special(SpecialColumn column) { return Column(static_cast<int>(column)); }
  const ValueColumn& Row(const RowId& id) { return Column(PlaceOf(id)); }

  // --- conditions

  template <typename Condition>
  Answers Where(Condition condition) {
    Answers answers(count_);
    for (std::size_t i = 0; i < count_; ++i) answers[i] = condition(i) ? 1 : 0;
    return answers;
  }

  Answers Evaluate(const Query& query) {
    switch (query.What) {
      case Query::Kind::kEverything:
        return Answers(count_, 1);
      case Query::Kind::kAnd:
      case Query::Kind::kOr:
        return Combine(query);
      case Query::Kind::kNot:
        return Negate(Evaluate(query.Parts.front()));
      case Query::Kind::kWords:
        return WithWords(query);
      case Query::Kind::kDate:
        return WithDate(query);
      case Query::Kind::kTick:
        return WithTick(query);
      case Query::Kind::kOption:
        return WithOption(query);
      case Query::Kind::kAutomatic:
        return WithFlag(kAutomaticFlag);
      case Query::Kind::kRowNumber:
      case Query::Kind::kRowText:
      case Query::Kind::kRowState:
        return WithRow(query);
    }
    return Answers(count_);
  }

  Answers Combine(const Query& query) {
    Answers answers = Evaluate(query.Parts.front());
    for (std::size_t part = 1; part < query.Parts.size(); ++part) {
      const Answers more = Evaluate(query.Parts[part]);
      for (std::size_t i = 0; i < count_; ++i) {
        answers[i] = query.What == Query::Kind::kAnd ? static_cast<char>(answers[i] & more[i])
                                                     : static_cast<char>(answers[i] | more[i]);
      }
    }
    return answers;
  }

  static Answers Negate(Answers answers) {
    for (char& each : answers) each = each == 0 ? 1 : 0;
    return answers;
  }

  Answers WithWords(const Query& query) {
    Answers answers(count_);
    store_.EachWithWords(query.Words, query.LastWordBegins, [&](std::int64_t id) {
      if (id >= 0 && static_cast<std::size_t>(id) < count_)
        answers[static_cast<std::size_t>(id)] = 1;
    });
    return answers;
  }

  Answers WithDate(const Query& query) {
    const ValueColumn& dates = Special(SpecialColumn::kDate);
    const auto seconds = [](const std::chrono::local_seconds& time) {
      return static_cast<double>(time.time_since_epoch().count());
    };
    return Where([&](std::size_t i) {
      return dates.States[i] == 1 && (!query.From || dates.Numbers[i] >= seconds(*query.From)) &&
             (!query.To || dates.Numbers[i] < seconds(*query.To));
    });
  }

  Answers WithTick(const Query& query) {
    const ValueColumn& ticks = Special(SpecialColumn::kTicks);
    return Where([&](std::size_t i) {
      return (static_cast<unsigned>(ticks.Numbers[i]) >> static_cast<unsigned>(query.Number) & 1) !=
             0;
    });
  }

  Answers WithOption(const Query& query) {
    const ValueColumn& options = Column(ColumnOfOption(query.Option));
    return Where(
        [&](std::size_t i) { return Holds(query.Compare, options.Numbers[i], query.Number); });
  }

  Answers WithFlag(std::uint8_t flag) {
    const ValueColumn& flags = Special(SpecialColumn::kFlags);
    return Where([&](std::size_t i) { return (flags.States[i] & flag) != 0; });
  }

  Answers WithRow(const Query& query) {
    if (query.Rows.empty()) return WithAnyState(query.State);
    Answers answers(count_);
    for (const RowId& id : query.Rows) {
      const Answers more = WithOneRow(query, Row(id));
      for (std::size_t i = 0; i < count_; ++i) answers[i] = static_cast<char>(answers[i] | more[i]);
    }
    return answers;
  }

  Answers WithAnyState(ValueState state) {
    const ValueColumn& states = Special(SpecialColumn::kStates);
    const unsigned bit = 1U << static_cast<unsigned>(state);
    return Where(
        [&](std::size_t i) { return (static_cast<unsigned>(states.Numbers[i]) & bit) != 0; });
  }

  Answers WithOneRow(const Query& query, const ValueColumn& column) {
    const auto wanted = static_cast<std::uint8_t>(
        query.What == Query::Kind::kRowState ? query.State : ValueState::kOk);
    if (query.What == Query::Kind::kRowState) {
      return Where([&](std::size_t i) { return column.States[i] == wanted; });
    }
    if (query.What == Query::Kind::kRowNumber) {
      return Where([&](std::size_t i) {
        return column.States[i] == wanted && Holds(query.Compare, column.Numbers[i], query.Number);
      });
    }
    const std::vector<std::int64_t> numbers = store_.NumbersOfTexts(
        [&](const std::string& text) { return EqualIgnoringCase(text, query.Text); });
    const std::unordered_set<std::int64_t> equal(numbers.begin(), numbers.end());
    return Where([&](std::size_t i) {
      const bool is = equal.count(static_cast<std::int64_t>(column.Numbers[i])) > 0;
      return column.States[i] == wanted && is == (query.Compare == Comparison::kEqual);
    });
  }

  // --- order

  // The value that a log is sorted by: a number, or the rank of its text.
  struct Rank {
    bool missing = true;
    double number = 0;
  };

  Rank RankOf(std::size_t log) {
    if (request_.SortBy == FindRequest::Key::kFolder) return {false, 0};
    if (request_.SortBy == FindRequest::Key::kDate) {
      const ValueColumn& dates = Special(SpecialColumn::kDate);
      return {dates.States[log] == 0, dates.Numbers[log]};
    }
    const RowId id = RowOf(request_.SortRow, log);
    const ValueColumn& column = Row(id);
    if (column.States[log] != static_cast<std::uint8_t>(ValueState::kOk)) return {};
    if (KindOf(catalogues_, id) != RowKind::kText) return {false, column.Numbers[log]};
    return {false, TextRank(static_cast<std::int64_t>(column.Numbers[log]))};
  }

  // The place of a text among all texts in the order of their upper-case bytes.
  double TextRank(std::int64_t number) {
    if (text_ranks_.empty()) {
      std::vector<std::pair<std::string, std::int64_t>> texts;
      for (const std::int64_t each :
           store_.NumbersOfTexts([](const std::string&) { return true; })) {
        texts.emplace_back(UpperCaseText(store_.TextOfNumber(each)), each);
      }
      std::sort(texts.begin(), texts.end());
      for (std::size_t i = 0; i < texts.size(); ++i) {
        const bool same = i > 0 && texts[i].first == texts[i - 1].first;
        text_ranks_[texts[i].second] =
            same ? text_ranks_[texts[i - 1].second] : static_cast<double>(i);
      }
    }
    return text_ranks_[number];
  }

  void Sort(std::vector<std::size_t>& found) {
    std::vector<Rank> ranks(count_);
    for (const std::size_t log : found) ranks[log] = RankOf(log);
    const ValueColumn& name1 = Special(SpecialColumn::kName1);
    const ValueColumn& name2 = Special(SpecialColumn::kName2);
    const bool descending = request_.SortOrder == FindRequest::Order::kDescending;
    const auto before = [&](std::size_t a, std::size_t b) {
      if (ranks[a].missing != ranks[b].missing) return ranks[b].missing;
      if (ranks[a].number != ranks[b].number) {
        return (ranks[a].number < ranks[b].number) != descending;
      }
      const auto names_of = [&](std::size_t log) {
        return std::pair(name1.Numbers[log], name2.Numbers[log]);
      };
      if (names_of(a) != names_of(b)) return (names_of(a) < names_of(b)) != descending;
      return a < b;
    };
    const std::size_t wanted = std::min(found.size(), request_.Limit);
    std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(wanted),
                      found.end(), before);
  }

  // --- what is shown

  RowId RowOf(const RowGroup& group, std::size_t log) {
    std::vector<ValueState> states;
    for (const RowId& id : group) states.push_back(static_cast<ValueState>(Row(id).States[log]));
    return group[ApplyingRow(states)];
  }

  FoundLog Describe(std::size_t log) {
    const StoredLog stored = store_.LogOfId(static_cast<std::int64_t>(log));
    std::optional<LogRecord> record = UnpackRecord(stored.Record);
    if (!record) RaiseDamage();
    FoundLog found;
    found.Folder = stored.Folder;
    found.Record = *std::move(record);
    const ValueColumn& dates = Special(SpecialColumn::kDate);
    if (dates.States[log] == 1) {
      found.Date = std::chrono::local_seconds(
          std::chrono::seconds(static_cast<std::int64_t>(dates.Numbers[log])));
    }
    const std::uint8_t flags = Special(SpecialColumn::kFlags).States[log];
    found.Automatic = (flags & kAutomaticFlag) != 0;
    found.HasTicks = (flags & kTicksFlag) != 0;
    const auto ticks = static_cast<unsigned>(Special(SpecialColumn::kTicks).Numbers[log]);
    for (std::size_t item = 0; item < found.Ticks.size(); ++item) {
      found.Ticks[item] = (ticks >> item & 1) != 0;
    }
    for (const RowGroup& group : request_.Columns) {
      found.ValueRows.push_back(RowOf(group, log));
      found.Values.push_back(ValueOf(found.ValueRows.back(), log));
    }
    return found;
  }

  RowValue ValueOf(const RowId& id, std::size_t log) {
    const ValueColumn& column = Row(id);
    RowValue value;
    value.State = static_cast<ValueState>(column.States[log]);
    if (value.State != ValueState::kOk) return value;
    if (KindOf(catalogues_, id) == RowKind::kText) {
      value.Text = store_.TextOfNumber(static_cast<std::int64_t>(column.Numbers[log]));
    } else {
      value.Number = column.Numbers[log];
    }
    return value;
  }

  IndexStore& store_;
  const Catalogues& catalogues_;
  const FindRequest& request_;
  std::size_t count_;
  std::map<int, ValueColumn> columns_;
  std::map<std::int64_t, double> text_ranks_;
};

}  // namespace

FindResult FindInIndex(IndexStore& store, const Catalogues& catalogues,
                       const FindRequest& request) {
  FindResult result;
  store.Look([&] { result = Searcher(store, catalogues, request).Run(); });
  return result;
}

std::size_t ApplyingRow(const std::vector<ValueState>& states) {
  const auto first_that = [&](auto condition) {
    return static_cast<std::size_t>(std::find_if(states.begin(), states.end(), condition) -
                                    states.begin());
  };
  const std::size_t with_value =
      first_that([](ValueState state) { return state == ValueState::kOk; });
  if (with_value < states.size()) return with_value;
  const std::size_t applying =
      first_that([](ValueState state) { return state != ValueState::kNotApplicable; });
  return applying < states.size() ? applying : 0;
}

}  // namespace logbook::insight
