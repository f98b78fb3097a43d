// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The commands of the list: viewing a log, choosing a column's value, deleting logs.
#pragma once

#include <cstdint>

#include "state/AppState.h"
#include "state/Services.h"

namespace logbook {

// "View Log" and a double click: opens the viewer on the list's current row if that is selected.
void cmdBrowse_Click(AppState& state, Services& services);

// Opens the viewer on a row, counted from 1.
void BrowseLog(AppState& state, Services& services, std::int16_t row);

// A click on the header of a column, counted from 1: opens the chooser for columns 3 to 8.
void ListView1_ColumnClick(AppState& state, Services& services, int column);

// Opens the chooser for a column and rebuilds the list, whatever its outcome.
void ChangeItem(AppState& state, Services& services, std::int16_t column);

// "Delete Log": asks once, then deletes the folders of the selected rows and uploads the list
// if the last of them could be removed. Nothing happens without a selection.
void cmdDelete_Click(AppState& state, Services& services);

// Deletes the folders of the selected rows, one message for each that cannot be removed, and
// rebuilds the list. True if the last selected row was removed. A folder goes by its exact name;
// one that is a link cannot be removed, and nothing behind it is touched.
bool DeleteSelectedLogs(AppState& state, Services& services);

}  // namespace logbook
