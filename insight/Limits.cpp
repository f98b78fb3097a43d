// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "insight/Limits.h"

#include <cmath>

namespace logbook::insight {
namespace {

class LimitsReader {
 public:
  LimitsReader(std::string_view file, const SettingsSection& section)
      : file_(file), section_(section) {}

  RowLimits Read() {
    for (const SettingsEntry& entry : section_.entries) Take(entry);
    if (!has_reference_) Fail(section_.line, "the row has no Reference");
    if (!limits_.tolerance && !limits_.action) Fail(section_.line, "neither Tolerance nor Action");
    if (limits_.tolerance && limits_.action &&
        limits_.action->Of(limits_.reference) < limits_.tolerance->Of(limits_.reference)) {
      Fail(section_.line, "Action lies nearer to the Reference than Tolerance");
    }
    return {section_.name, section_.line, limits_};
  }

 private:
  [[noreturn]] void Fail(int line, std::string_view what) const {
    throw SettingsError(file_, line, what);
  }

  void Take(const SettingsEntry& entry) {
    if (SameName(entry.key, "Reference")) return TakeReference(entry);
    if (SameName(entry.key, "Tolerance")) return TakeAmount(entry, limits_.tolerance);
    if (SameName(entry.key, "Action")) return TakeAmount(entry, limits_.action);
    if (SameName(entry.key, "Side")) return TakeSide(entry);
    Fail(entry.line, "unknown key; the keys are Reference, Tolerance, Action and Side");
  }

  void TakeReference(const SettingsEntry& entry) {
    const std::optional<double> number = WholeNumber(entry.value);
    if (!number) Fail(entry.line, "Reference is not a number");
    limits_.reference = *number;
    has_reference_ = true;
  }

  void TakeAmount(const SettingsEntry& entry, std::optional<Amount>& amount) {
    amount = ParseAmount(entry.value);
    if (!amount) Fail(entry.line, "expected a number of 0 or more, or one with \"%\" behind it");
  }

  void TakeSide(const SettingsEntry& entry) {
    if (SameName(entry.value, "both")) return;
    if (SameName(entry.value, "above")) {
      limits_.side = Limits::Side::kAbove;
    } else if (SameName(entry.value, "below")) {
      limits_.side = Limits::Side::kBelow;
    } else {
      Fail(entry.line, "Side is both, above or below");
    }
  }

  std::string_view file_;
  const SettingsSection& section_;
  Limits limits_;
  bool has_reference_ = false;
};

}  // namespace

std::vector<RowLimits> ParseLimits(std::string_view file, std::string_view text) {
  std::vector<RowLimits> rows;
  for (const SettingsSection& section : ParseSettings(file, text)) {
    if (section.line == 0) {
      throw SettingsError(file, section.entries.front().line, "the key stands before any section");
    }
    rows.push_back(LimitsReader(file, section).Read());
  }
  return rows;
}

Verdict JudgeValue(const Limits& limits, double value) {
  // What decimals lose as binary numbers takes no value beyond a limit that it lies on.
  const double slack = 1e-12 * (std::abs(value) + std::abs(limits.reference));
  const double off = value - limits.reference;
  if (off > 0 && limits.side == Limits::Side::kBelow) return Verdict::kWithin;
  if (off < 0 && limits.side == Limits::Side::kAbove) return Verdict::kWithin;
  const auto beyond = [&](const std::optional<Amount>& amount) {
    return amount && std::abs(off) > amount->Of(limits.reference) + slack;
  };
  if (beyond(limits.action)) return Verdict::kBeyondAction;
  return beyond(limits.tolerance) ? Verdict::kBeyondTolerance : Verdict::kWithin;
}

std::string_view VerdictText(Verdict verdict) {
  switch (verdict) {
    case Verdict::kWithin:
      return "ok";
    case Verdict::kBeyondTolerance:
      return "watch";
    case Verdict::kBeyondAction:
      return "act";
  }
  return {};
}

}  // namespace logbook::insight
