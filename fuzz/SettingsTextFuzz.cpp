// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files that people write for the analysing commands (limits, intervals): what was understood comes
// back when it is written anew, what was not is told with a line of the file, a value farther from
// its reference is judged no milder, an interval ends after it begins and no later than a century,
// and a number is what strtod makes of it.

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "Fuzzing.h"
#include "insight/Limits.h"
#include "insight/SettingsText.h"
#include "insight/Upkeep.h"

namespace logbook::fuzz {
namespace {

using namespace insight;

constexpr std::string_view kFile = "some.ini";

// Runs the call; false if it tells that the text cannot be understood, and where.
template <typename Call>
bool Understands(std::string_view text, Call call) {
  try {
    call();
    return true;
  } catch (const SettingsError& error) {
    std::string_view message = error.what();
    FUZZ_REQUIRE(message.starts_with(std::string(kFile) + ":"));
    message.remove_prefix(kFile.size() + 1);
    int line = 0;
    const auto [end, failure] =
        std::from_chars(message.data(), message.data() + message.size(), line);
    FUZZ_REQUIRE(failure == std::errc() && std::string_view(end).starts_with(": "));
    FUZZ_REQUIRE(line >= 1 && line <= 1 + std::ranges::count(text, '\n'));
    return false;
  }
}

std::string Written(const std::vector<SettingsSection>& sections) {
  std::string text = "# written\n";
  for (const SettingsSection& section : sections) {
    if (section.line != 0) text += "[" + section.name + "]\n";
    for (const SettingsEntry& entry : section.entries)
      text += entry.key + " = \"" + entry.value + "\"\n";
  }
  return text;
}

bool IsSame(const SettingsEntry& a, const SettingsEntry& b) {
  return a.key == b.key && a.value == b.value;
}

bool AreSame(const std::vector<SettingsSection>& a, const std::vector<SettingsSection>& b) {
  return std::ranges::equal(a, b, [](const SettingsSection& x, const SettingsSection& y) {
    return x.name == y.name && std::ranges::equal(x.entries, y.entries, IsSame);
  });
}

void TrySections(std::string_view text) {
  std::vector<SettingsSection> sections;
  if (!Understands(text, [&] { sections = ParseSettings(kFile, text); })) return;
  FUZZ_REQUIRE(AreSame(ParseSettings(kFile, Written(sections)), sections));
}

void TryLimits(std::string_view text) {
  std::vector<RowLimits> rows;
  if (!Understands(text, [&] { rows = ParseLimits(kFile, text); })) return;
  for (const RowLimits& row : rows) {
    const Limits& limits = row.limits;
    FUZZ_REQUIRE(JudgeValue(limits, limits.reference) == Verdict::kWithin);
    for (const double side : {-1.0, 1.0}) {
      Verdict before = Verdict::kWithin;
      for (double distance = 1e-9; distance < 1e300; distance *= 1000) {
        const Verdict verdict = JudgeValue(limits, limits.reference + side * distance);
        FUZZ_REQUIRE(verdict >= before);
        before = verdict;
      }
    }
  }
}

void TryIntervals(std::string_view text) {
  constexpr LocalDay kLeapDay{
      std::chrono::sys_days(std::chrono::year(2024) / 2 / 29).time_since_epoch()};
  Intervals intervals;
  if (!Understands(text, [&] { intervals = ParseIntervals(kFile, text); })) return;
  FUZZ_REQUIRE(intervals.soon >= 0 && intervals.soon <= 36525);
  for (const std::optional<Interval>& interval : intervals.items) {
    if (!interval) continue;
    const auto again = ParseInterval(IntervalText(*interval));
    FUZZ_REQUIRE(again && again->days == interval->days && again->months == interval->months);
    const LocalDay end = interval->After(kLeapDay);
    FUZZ_REQUIRE(end > kLeapDay && end - kLeapDay <= std::chrono::days(36525));
    FUZZ_REQUIRE(interval->After(kLeapDay + std::chrono::days(1)) >= end);
  }
}

void TryNumber(const std::string& text) {
  if (const std::optional<double> number = WholeNumber(text)) {
    char* end = nullptr;
    FUZZ_REQUIRE(std::strtod(text.c_str(), &end) == *number);
    FUZZ_REQUIRE(std::string_view(end).find_first_not_of(" \t\r") == std::string_view::npos);
  }
  if (const std::optional<Amount> amount = ParseAmount(text)) FUZZ_REQUIRE(amount->Of(-3) >= 0);
}

void Try(Input input) {
  TryNumber(input.Text());
  TrySections(input.Rest());
  TryLimits(input.Rest());
  TryIntervals(input.Rest());
}

}  // namespace
}  // namespace logbook::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  logbook::fuzz::Try({data, size});
  return 0;
}
