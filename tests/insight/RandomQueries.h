// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Queries of all kinds, made from what some logs hold, so that they find some of them.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "insight/QueryMatch.h"

namespace logbook::test {

class RandomQueries {
 public:
  RandomQueries(std::uint64_t seed, const std::vector<insight::SearchedLog>& logs)
      : random_(seed), logs_(logs) {}

  // The text of a query.
  std::string Next() { return Combination(3); }
  // A word, a phrase or a beginning from the logs, or one that no log has.
  std::string Words();

 private:
  int Pick(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
  const insight::SearchedLog& Log() {
    return logs_[static_cast<std::size_t>(Pick(static_cast<int>(logs_.size()) - 1))];
  }

  std::string Combination(int depth);
  std::string Condition();
  std::string Date();
  std::string Row();
  std::string Comparison();

  std::mt19937_64 random_;
  const std::vector<insight::SearchedLog>& logs_;
};

}  // namespace logbook::test
