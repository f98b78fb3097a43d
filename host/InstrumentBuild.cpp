// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/InstrumentBuild.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "base/UpperCase.h"

namespace logbook::host {
namespace {

struct LensName {
  std::string_view name;
  LensFamily lens;
};

constexpr auto kLensNames = std::to_array<LensName>({
    {"plain", LensFamily::kPlain},
    {"lumarin", LensFamily::kLumarin},
    {"trz-cs", LensFamily::kTrzCs},
    {"trz-ce", LensFamily::kTrzCe},
});

struct OptionName {
  std::string_view name;  // in a build's name
  std::string_view key;   // in section "OPTION"
  int InstrumentBuild::*value;
};

constexpr auto kOptionNames = std::to_array<OptionName>({
    {"security", "Security", &InstrumentBuild::security},
    {"styleb", "STYLEB", &InstrumentBuild::styleb},
    {"new_rf", "NEW_RF", &InstrumentBuild::new_rf},
    {"qptype", "QPTYPE", &InstrumentBuild::qptype},
    {"afc", "AFC", &InstrumentBuild::afc},
    {"sc", "SC", &InstrumentBuild::sc},
    {"opgs", "OPGS", &InstrumentBuild::opgs},
    {"pmp2", "PMP2", &InstrumentBuild::pmp2},
    {"colopgs", "COLOPGS", &InstrumentBuild::colopgs},
});

LensFamily ParseLens(std::string_view name) {
  const auto found = std::find_if(kLensNames.begin(), kLensNames.end(), [&](const LensName& row) {
    return EqualIgnoringCase(row.name, name);
  });
  if (found == kLensNames.end()) {
    throw std::invalid_argument("unknown lens family \"" + std::string(name) +
                                "\": plain, lumarin, trz-cs or trz-ce");
  }
  return found->lens;
}

void ParseOption(std::string_view text, InstrumentBuild& build) {
  const std::string_view name = text.substr(0, text.find('='));
  const auto found =
      std::find_if(kOptionNames.begin(), kOptionNames.end(),
                   [&](const OptionName& row) { return EqualIgnoringCase(row.name, name); });
  if (found == kOptionNames.end()) {
    throw std::invalid_argument("unknown option \"" + std::string(name) +
                                "\" of an instrument build");
  }
  int number = 1;
  if (name.size() != text.size()) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + name.size() + 1, end, number);
    if (error != std::errc() || stop != end) {
      throw std::invalid_argument("no number behind \"" + std::string(name) + "=\"");
    }
  }
  build.*found->value = number;
}

}  // namespace

InstrumentBuild ParseBuild(std::string_view text) {
  std::string_view rest = text;
  InstrumentBuild build;
  build.lens = ParseLens(rest.substr(0, rest.find('+')));
  while (rest.find('+') != std::string_view::npos) {
    rest.remove_prefix(rest.find('+') + 1);
    ParseOption(rest.substr(0, rest.find('+')), build);
  }
  return build;
}

std::string BuildName(const InstrumentBuild& build) {
  std::string name;
  for (const LensName& row : kLensNames) {
    if (row.lens == build.lens) name = row.name;
  }
  for (const OptionName& row : kOptionNames) {
    const int value = build.*row.value;
    if (value == 0) continue;
    name.append("+").append(row.name);
    if (value != 1) name.append("=").append(std::to_string(value));
  }
  return name;
}

std::vector<std::pair<std::string, std::string>> OptionSection(const InstrumentBuild& build) {
  std::vector<std::pair<std::string, std::string>> section = {
      {"LENS", Flag(build.lens != LensFamily::kPlain)},
      {"LENS2", Flag(build.lens == LensFamily::kTrzCs || build.lens == LensFamily::kTrzCe)},
      {"LENS3", Flag(build.lens == LensFamily::kTrzCe)},
  };
  for (const OptionName& row : kOptionNames) {
    section.emplace_back(row.key, std::to_string(build.*row.value));
  }
  return section;
}

bool IsFitted(const InstrumentBuild& build, Fitted hardware) {
  const bool cell = build.lens != LensFamily::kPlain;
  switch (hardware) {
    case Fitted::kAlways:
      return true;
    case Fitted::kPlainLens:
      return !cell;
    case Fitted::kLumarin:
      return build.lens == LensFamily::kLumarin;
    case Fitted::kTrzCs:
      return build.lens == LensFamily::kTrzCs;
    case Fitted::kTrzCe:
      return build.lens == LensFamily::kTrzCe;
    case Fitted::kCell:
      return cell;
    case Fitted::kCellOptionGas:
      return cell && build.colopgs != 0;
    case Fitted::kOptionGas:
      return build.opgs != 0;
    case Fitted::kSampleCooler:
      return build.sc != 0;
    case Fitted::kStyleB:
      return build.styleb != 0;
    case Fitted::kSeparatePumps:
      return build.styleb == 0;
    case Fitted::kNewRf:
      return build.new_rf != 0;
    case Fitted::kClassicRf:
      return build.new_rf == 0;
    case Fitted::kAfc:
      return build.afc != 0;
    case Fitted::kClassicFlow:
      return build.afc == 0;
    case Fitted::kQpType:
      return build.qptype != 0;
    case Fitted::kClassicQuad:
      return build.qptype == 0;
  }
  return false;
}

}  // namespace logbook::host
