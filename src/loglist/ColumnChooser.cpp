// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "loglist/ColumnChooser.h"

#include <array>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "base/Profile.h"
#include "loglist/LogList.h"
#include "placement/Arrangement.h"
#include "resources/ResourceText.h"
#include "resources/Resources.h"
#include "state/Fonts.h"

namespace logbook {
namespace {

constexpr int kSelectMessage = 220;
constexpr int kLastTuneChoice = 154;
constexpr int kLastTuneLabel = 155;

constexpr std::array<const char*, 3> kCategories = {"Tune", "Meter", "Analog"};

// Entries from `first` to `last` carry the string of this number in front.
struct Prefix {
  int first;
  int last;
  int string;
};

// clang-format off
constexpr auto kMeterPrefixes = std::to_array<Prefix>({
    { 25,  27, 129},  // "Style B:"
});

constexpr auto kAnalogPrefixes = std::to_array<Prefix>({
    {107, 124, 514},  // "Lumarin:"
    {125, 149, 126},  // "NEW RF:"
    {150, 168, 128},  // "Varion TRZ:"
    {169, 172, 129},  // "Style B:"
    {173, 191, 130},  // "Varion TRZ(ce):"
});
// clang-format on

template <typename Items, typename Prefixes>
std::vector<std::string> Entries(const Items& items, int last, const Prefixes& prefixes) {
  std::vector<std::string> entries;
  for (int row = 0; row <= last; ++row) {
    std::string entry;
    for (const Prefix& prefix : prefixes) {
      if (row >= prefix.first && row <= prefix.last) entry = LoadResString(prefix.string);
    }
    entries.push_back(entry + items[static_cast<std::size_t>(row)].Name);
  }
  return entries;
}

// The tune row of this label, the last one if there are several.
std::optional<int> TuneRowOf(const Catalogues& catalogues, const std::string& label) {
  std::optional<int> found;
  for (int row = 0; row <= kLastTuneLabel; ++row) {
    if (catalogues.TuneItems[static_cast<std::size_t>(row)].Name == label) found = row;
  }
  return found;
}

void AskForSelection(Services& services) {
  services.messages.Show({.Text = ResourceText(kSelectMessage)});
}

void SetChooserFonts(ColumnChooser& chooser) {
  for (Control* control :
       {&chooser.Window, &chooser.Frame1, &chooser.Option1, &chooser.Option2, &chooser.Option3,
        &chooser.List1, &chooser.cmdOK, &chooser.cmdCancel, &chooser.cmdHelp}) {
    control->TextFont = FormFont();
  }
}

void SetChooserCaptions(ColumnChooser& chooser) {
  const std::pair<Control*, int> captions[] = {{&chooser.Window, 207},    {&chooser.Frame1, 208},
                                               {&chooser.Option1, 209},   {&chooser.Option2, 210},
                                               {&chooser.Option3, 211},   {&chooser.cmdOK, 120},
                                               {&chooser.cmdCancel, 127}, {&chooser.cmdHelp, 119}};
  for (const auto& [control, number] : captions) control->Caption = LoadResString(number);
}

}  // namespace

ColumnChooser::ColumnChooser() {
  const std::pair<Control*, const char*> controls[] = {
      {&Window, "frmChangeItem"}, {&Frame1, "Frame1"},       {&Option1, "Option1"},
      {&Option2, "Option2"},      {&Option3, "Option3"},     {&List1, "List1"},
      {&cmdOK, "cmdOK"},          {&cmdCancel, "cmdCancel"}, {&cmdHelp, "cmdHelp"}};
  const std::vector<Rect> places = LoadPlaces("IDRES_CHOOSER_ARRANGE", std::size(controls));
  auto place = places.begin();
  for (const auto& [control, name] : controls) *control = {.Name = name, .Place = *place++};
  Option3.Visible = false;
}

void LoadColumnChooser(const AppState& state, ColumnChooser& chooser) {
  chooser.Option3.Visible = state.CEMode;
  SetChooserFonts(chooser);
  SetChooserCaptions(chooser);
  FillChoices(state, chooser);
}

void SetOption(const AppState& state, ColumnChooser& chooser, int number) {
  chooser.OptionSet = number;
  FillChoices(state, chooser);
}

std::vector<std::string> FillTuneChoices(const Catalogues& catalogues) {
  return Entries(catalogues.TuneItems, kLastTuneChoice, std::array<Prefix, 0>());
}

std::vector<std::string> FillMeterChoices(const Catalogues& catalogues) {
  return Entries(catalogues.MeterItems, kMeterRowCount - 1, kMeterPrefixes);
}

std::vector<std::string> FillAnalogChoices(const Catalogues& catalogues) {
  return Entries(catalogues.AnalogItems, kAnalogRowCount - 1, kAnalogPrefixes);
}

void FillChoices(const AppState& state, ColumnChooser& chooser) {
  chooser.ListIndex = -1;
  if (chooser.OptionSet == 1) {
    chooser.Items = FillTuneChoices(state.catalogues);
  } else if (chooser.OptionSet == 2) {
    chooser.Items = FillMeterChoices(state.catalogues);
  } else {
    chooser.Items = FillAnalogChoices(state.catalogues);
  }
}

void ColumnChooserOK(const AppState& state, Services& services, ColumnChooser& chooser) {
  if (chooser.ListIndex < 0) {
    AskForSelection(services);
    return;
  }
  const std::string section = ColumnSection(state, state.ChangeColumn);
  const std::string& label = chooser.Items.at(static_cast<std::size_t>(chooser.ListIndex));
  const std::optional<int> row =
      chooser.OptionSet == 1 ? TuneRowOf(state.catalogues, label) : chooser.ListIndex;
  chooser.Unloaded = true;
  if (!row) {
    AskForSelection(services);
    return;
  }
  const char* category = kCategories.at(static_cast<std::size_t>(chooser.OptionSet - 1));
  // A category without its row, or the reverse, would be another column or none.
  const ProfileValue choice[] = {{section, "Cat", category},
                                 {section, "Item", std::to_string(*row)}};
  WritePrivateProfileStrings(state.machine, choice, state.IniFile);
}

void ColumnChooserCancel(ColumnChooser& chooser) {
  chooser.Unloaded = true;
}

HelpTopic ColumnChooserHelpTopic(const AppState& state) {
  return state.CEMode ? HelpTopic::kColumnChooserCE : HelpTopic::kColumnChooser;
}

}  // namespace logbook
