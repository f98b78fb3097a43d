// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/ControlChart.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace logbook::insight {
namespace {

constexpr double kLimitFactor = 2.66;
constexpr int kFirstRule = static_cast<int>(ControlRule::kBeyondLimits);
constexpr int kLastRule = static_cast<int>(ControlRule::kEightOnOneSide);

// The last values up to one of them, the newest at 0.
class Window {
 public:
  Window(std::span<const double> values, std::size_t last, const ControlChart& chart)
      : values_(values), last_(last), mean_(chart.mean), sigma_(chart.Sigma()) {}

  bool Has(std::size_t count) const { return last_ + 1 >= count; }
  double Value(std::size_t back) const { return values_[last_ - back]; }
  // Distance from the mean in sigmas.
  double Distance(std::size_t back) const { return (Value(back) - mean_) / sigma_; }

  // How many of the last `count` values lie beyond so many sigmas on the side of `sign`.
  int Beyond(std::size_t count, double sigmas, int sign) const {
    int beyond = 0;
    for (std::size_t i = 0; i < count; ++i) beyond += Distance(i) * sign > sigmas ? 1 : 0;
    return beyond;
  }

  // `needed` of the last `count` values beyond so many sigmas on one side, the newest among them.
  bool OnOneSide(std::size_t count, int needed, double sigmas) const {
    if (!Has(count)) return false;
    const int sign = Distance(0) > 0 ? 1 : -1;
    return Distance(0) * sign > sigmas && Beyond(count, sigmas, sign) >= needed;
  }

  bool OneWay(std::size_t count) const {
    return Has(count) && (Steps(count, 1, 1) || Steps(count, -1, 1));
  }

  bool ToAndFro(std::size_t count) const {
    return Has(count) && (Steps(count, 1, -1) || Steps(count, -1, -1));
  }

  bool AllWithin(std::size_t count, double sigmas) const {
    if (!Has(count)) return false;
    for (std::size_t i = 0; i < count; ++i) {
      if (std::abs(Distance(i)) > sigmas) return false;
    }
    return true;
  }

  bool AllBeyond(std::size_t count, double sigmas) const {
    return Has(count) &&
           Beyond(count, sigmas, 1) + Beyond(count, sigmas, -1) == static_cast<int>(count);
  }

 private:
  // Every step between the last `count` values goes the way of `sign`, which `turn` multiplies from
  // step to step.
  bool Steps(std::size_t count, int sign, int turn) const {
    for (std::size_t i = 0; i + 1 < count; ++i, sign *= turn) {
      if ((Value(i) - Value(i + 1)) * sign <= 0) return false;
    }
    return true;
  }

  std::span<const double> values_;
  std::size_t last_;
  double mean_;
  double sigma_;
};

bool Fulfils(const Window& window, ControlRule rule) {
  switch (rule) {
    case ControlRule::kBeyondLimits:
      return std::abs(window.Distance(0)) > 3;
    case ControlRule::kNineOnOneSide:
      return window.OnOneSide(9, 9, 0);
    case ControlRule::kSixOneWay:
      return window.OneWay(6);
    case ControlRule::kFourteenToAndFro:
      return window.ToAndFro(14);
    case ControlRule::kTwoOfThree:
      return window.OnOneSide(3, 2, 2);
    case ControlRule::kFourOfFive:
      return window.OnOneSide(5, 4, 1);
    case ControlRule::kFifteenInside:
      return window.AllWithin(15, 1);
    case ControlRule::kEightOutside:
      return window.AllBeyond(8, 1);
    case ControlRule::kEightOnOneSide:
      return window.OnOneSide(8, 8, 0);
  }
  return false;
}

// One part of a list of rules: "3" or "2-5".
bool AddRules(std::string_view part, ControlRules& rules) {
  const auto digit = [&](std::size_t i) { return part[i] - '0'; };
  const bool range = part.size() == 3 && part[1] == '-';
  if (part.size() != 1 && !range) return false;
  const int first = digit(0);
  const int last = range ? digit(2) : first;
  if (first < kFirstRule || last > kLastRule || first > last) return false;
  for (int rule = first; rule <= last; ++rule) rules.insert(static_cast<ControlRule>(rule));
  return true;
}

}  // namespace

std::optional<ControlRules> ParseControlRules(std::string_view text) {
  if (text == "nelson") text = "1-8";
  if (text == "western") text = "1,5,6,9";
  ControlRules rules;
  while (true) {
    const std::size_t comma = text.find(',');
    if (!AddRules(text.substr(0, comma), rules)) return std::nullopt;
    if (comma == std::string_view::npos) return rules;
    text.remove_prefix(comma + 1);
  }
}

std::string_view RuleText(ControlRule rule) {
  constexpr auto kTexts = std::to_array<std::string_view>({
      "beyond a limit",
      "nine in a row on one side of the mean",
      "six in a row that rise or fall",
      "fourteen in a row that rise and fall by turns",
      "two of three in a row beyond two sigma on one side",
      "four of five in a row beyond one sigma on one side",
      "fifteen in a row within one sigma",
      "eight in a row beyond one sigma on either side",
      "eight in a row on one side of the mean",
  });
  static_assert(kTexts.size() == kLastRule);
  return kTexts.at(static_cast<std::size_t>(rule) - kFirstRule);
}

std::optional<ControlChart> MakeControlChart(std::span<const double> values,
                                             const ControlRules& rules) {
  if (values.size() < 2) return std::nullopt;
  ControlChart chart;
  double ranges = 0;
  double offsets = 0;  // from the first value, so that equal values have exactly their mean
  for (std::size_t i = 1; i < values.size(); ++i) {
    ranges += std::abs(values[i] - values[i - 1]);
    offsets += values[i] - values[0];
  }
  chart.mean = values[0] + offsets / static_cast<double>(values.size());
  chart.moving_range = ranges / static_cast<double>(values.size() - 1);
  chart.lower = chart.mean - kLimitFactor * chart.moving_range;
  chart.upper = chart.mean + kLimitFactor * chart.moving_range;
  if (!(chart.Sigma() > 0)) return chart;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Window window(values, i, chart);
    for (const ControlRule rule : rules) {
      if (Fulfils(window, rule)) chart.hits.push_back({rule, i});
    }
  }
  return chart;
}

}  // namespace logbook::insight
