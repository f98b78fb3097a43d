// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The verbs of logbookctl, each in a file of its name. All but "report --write" only read.
#pragma once

#include "Frame.h"

namespace logbook::cli {

// "catalogue [NAME]": a catalogue, or all of them, as tab-separated rows.
void AddCatalogue(Frame& frame);
// "strings": the string table.
void AddStrings(Frame& frame);
// "list": the bytes of listlog.csv for a folder of logs and a choice of columns.
void AddList(Frame& frame);
// "report KIND LOGFOLDER": the bytes of a report of one log.
void AddReport(Frame& frame);

// "find QUERY": logs by what they say.
void AddFind(Frame& frame);
// "show LOG [ROWS]": one log.
void AddShow(Frame& frame);
// "due": when maintenance was last done and when it is due.
void AddDue(Frame& frame);
// "trend ROW...": rows over time.
void AddTrend(Frame& frame);
// "diff LOG LOG...": what is different between logs, or from a baseline.
void AddDiff(Frame& frame);
// "export --format FORMAT FILE": the values for other programs.
void AddExport(Frame& frame);
// "check": what is wrong with a folder of logs.
void AddCheck(Frame& frame);

// "diagnose [FILE]": what helps to understand a fault.
void AddDiagnose(Frame& frame);

}  // namespace logbook::cli
