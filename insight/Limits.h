// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The limits that people set for catalogue rows, from a file such as limits.ini (docs/insight.md):
// a reference value, and how far a value may lie from it before it is watched (tolerance) and
// before something must be done (action). Pure: text in, value out.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "insight/SettingsText.h"

namespace logbook::insight {

struct Limits {
  enum class Side { kBoth, kAbove, kBelow };

  double reference = 0;
  std::optional<Amount> tolerance;  // distance from the reference; per cent are of the reference
  std::optional<Amount> action;
  Side side = Side::kBoth;  // where a distance counts at all
};

// The limits of one row, with the row as the file names it.
struct RowLimits {
  std::string row;
  int line = 0;  // of the section, from 1
  Limits limits;
};

// One section a row: its name is the row, its keys are Reference (compulsory), Tolerance, Action
// and Side ("both", "above", "below"); at least one of Tolerance and Action. Raises SettingsError
// for anything else, and for an action that lies nearer than the tolerance.
std::vector<RowLimits> ParseLimits(std::string_view file, std::string_view text);

enum class Verdict { kWithin, kBeyondTolerance, kBeyondAction };

// A value that lies exactly on a limit is still within it.
Verdict JudgeValue(const Limits& limits, double value);

// "ok", "watch", "act".
std::string_view VerdictText(Verdict verdict);

}  // namespace logbook::insight
