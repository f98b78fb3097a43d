// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// frmChangeItem as the program sees it: the dialog that chooses what a value column of the list
// shows. The choice, a category and a catalogue row, goes to logbook.ini (docs/file-formats.md).
#pragma once

#include <array>
#include <string>
#include <vector>

#include "help/arvbsub.h"
#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

struct ColumnChooser {
  ColumnChooser();  // controls with their names and places

  Control Window;                     // Place: client size; Caption: the title
  Control Frame1;                     // holds the option buttons
  Control Option1, Option2, Option3;  // places inside Frame1
  Control List1;
  Control cmdOK, cmdCancel, cmdHelp;

  int OptionSet = 1;               // number of the option button that is set, 1 to 3
  std::vector<std::string> Items;  // the entries of List1
  int ListIndex = -1;              // selected entry, from 0; -1 for none
  bool Unloaded = false;
};

// The load step: shows Option3 in CE mode alone, sets fonts and captions, fills the list.
void LoadColumnChooser(const AppState& state, ColumnChooser& chooser);

// A click on an option button: sets it and fills the list anew; nothing is selected then.
void SetOption(const AppState& state, ColumnChooser& chooser, int number);

// The entries of the list, one for each catalogue row from 0 without a gap: the row's name, some
// with a prefix in front that tells apart the variants of one quantity. No log's options are asked.
std::vector<std::string> FillTuneChoices(const Catalogues& catalogues);    // rows 0 to 154
std::vector<std::string> FillMeterChoices(const Catalogues& catalogues);   // rows 0 to 28
std::vector<std::string> FillAnalogChoices(const Catalogues& catalogues);  // rows 0 to 214

// Fills the list for the option that is set.
void FillChoices(const AppState& state, ColumnChooser& chooser);

// OK and a double click in the list. Without a selection: one message, and the dialog stays open.
// Otherwise stores category ("Cat") and row number ("Item") in the section of ChangeColumn, both
// in one replacement of the file, and unloads; a tune row is looked up by its label, the others go
// by position. An unknown tune label gives the same message, and nothing is written. Results of the
// writes are not looked at.
void ColumnChooserOK(const AppState& state, Services& services, ColumnChooser& chooser);

// Cancel: unloads and writes nothing.
void ColumnChooserCancel(ColumnChooser& chooser);

// The help topic of the dialog; CE mode has one of its own.
HelpTopic ColumnChooserHelpTopic(const AppState& state);

}  // namespace logbook
