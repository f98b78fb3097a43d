// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The control chart of individual values: the mean of the values, and limits 2.66 times the mean
// moving range away from it. A third of that distance is the chart's "sigma". Values in order of
// time; gaps are not among them, so the values on both sides of a gap are neighbours. Pure
// reckoning; none raises anything.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace logbook::insight {

// What is unlikely to be chance. 1 to 8 are the tests of L. S. Nelson by his numbers; the last is
// the fourth rule of the Western Electric handbook, whose other three are 1, 5 and 6.
enum class ControlRule {
  kBeyondLimits = 1,      // one value beyond a limit
  kNineOnOneSide = 2,     // nine in a row on one side of the mean
  kSixOneWay = 3,         // six in a row that rise, or fall
  kFourteenToAndFro = 4,  // fourteen in a row that rise and fall by turns
  kTwoOfThree = 5,        // two of three in a row beyond two sigma on one side
  kFourOfFive = 6,        // four of five in a row beyond one sigma on one side
  kFifteenInside = 7,     // fifteen in a row within one sigma of the mean
  kEightOutside = 8,      // eight in a row beyond one sigma, on either side
  kEightOnOneSide = 9,    // eight in a row on one side of the mean
};

using ControlRules = std::set<ControlRule>;

// The rules that a text names: "nelson", "western", or numbers and ranges of 1 to 9 with commas
// between, such as "1,3" or "1-4,7". Nothing for any other text.
std::optional<ControlRules> ParseControlRules(std::string_view text);

// What a rule says, such as "nine in a row on one side of the mean".
std::string_view RuleText(ControlRule rule);

// A rule that a value fulfils, alone or as the last of its run.
struct RuleHit {
  ControlRule rule = ControlRule::kBeyondLimits;
  std::size_t value = 0;  // index of the value
  bool operator==(const RuleHit&) const = default;
};

struct ControlChart {
  double mean = 0;
  double moving_range = 0;  // mean of the differences of neighbours, without sign
  double lower = 0;
  double upper = 0;
  std::vector<RuleHit> hits;  // by value, then by rule

  double Sigma() const { return (upper - mean) / 3; }
};

// Nothing for fewer than two values, which have no moving range. Where all values are equal nothing
// is unusual, and there are no hits.
std::optional<ControlChart> MakeControlChart(std::span<const double> values,
                                             const ControlRules& rules);

}  // namespace logbook::insight
