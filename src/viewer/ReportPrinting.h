// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Printing of the report that the viewer shows, with the log's comment below it. What is printed
// is the file on disk and not the pane: the report file of the last view, or the host's own log.
// The tune report is printed by the host (viewer/LogView.h).
#pragma once

#include <string>

#include "state/AppState.h"
#include "state/Services.h"
#include "viewer/LogView.h"

namespace logbook {

// "Print": prints what ViewMode says; nothing for 0. A run-time error is shown in a message box.
void cmdPrint_Click(AppState& state, Services& services, LogView& view);

// Prints a file of the log folder on the default printer, without a dialog, and hands the print
// image to the content server if there is one. A missing file prints nothing of itself; the
// comment follows all the same. A run-time error is shown in a message box and ends the print.
void PrintReport(AppState& state, Services& services, LogView& view, const std::string& file_name,
                 bool landscape);

// Empties the viewer's sheet, titles it and names it by ViewMode; values but 2 to 11 leave the
// name as it is.
void InitReport(const AppState& state, LogView& view);

// The sheet for a report: a line of the file in each row, then a row "Comment:" with a rule above
// it, two below the row behind the last line, and the first 70 characters of each line of
// comment.txt. Reading ends for good at a line that has 65536 bytes of the code page or more, its
// line end counted. Raises what InputFile raises.
void FillReportSheet(const AppState& state, LogView& view, const std::string& file_name);

}  // namespace logbook
