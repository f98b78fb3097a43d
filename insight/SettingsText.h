// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Files that people write to set up the analysing commands (limits, intervals, tolerances): UTF-8
// text of sections "[name]" and lines "key = value", with comments that begin with ";" or "#"
// (docs/insight.md). Unlike profiles, nothing in them is passed over: what cannot be understood is
// told with its line. Pure: text in, value out.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace logbook::insight {

// What is wrong with a settings file. The message names file and line: "limits.ini:3: ...".
class SettingsError : public std::runtime_error {
 public:
  SettingsError(std::string_view file, int line, std::string_view what);
};

struct SettingsEntry {
  std::string key;
  std::string value;  // without blanks and the pair of equal quotes around it
  int line = 0;       // from 1
};

struct SettingsSection {
  std::string name;
  int line = 0;  // from 1; 0 for the entries before the first section, whose name is empty
  std::vector<SettingsEntry> entries;
};

// The sections in their order; those of equal name stand by themselves. `file` is for messages.
// Raises SettingsError for a line that is none of the above, an empty name, and a key that its
// section holds already (names are compared without regard to ASCII case).
std::vector<SettingsSection> ParseSettings(std::string_view file, std::string_view text);

// True if two names are equal without regard to ASCII case.
bool SameName(std::string_view left, std::string_view right);

// A number that is the whole text, with a point for decimals; nothing for any other text, and for
// one that is not finite.
std::optional<double> WholeNumber(std::string_view text);

// An amount: a number, or a number with "%" behind it.
struct Amount {
  double number = 0;
  bool percent = false;

  // The amount in units of what it is an amount of: per cent are taken of the magnitude of `whole`.
  double Of(double whole) const;
};

// Nothing for any other text, and for a negative amount.
std::optional<Amount> ParseAmount(std::string_view text);

}  // namespace logbook::insight
