// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// logbookctl: what the logbook knows and shows, on the terminal. It only reads, unless a report is
// to be written.

#include <iostream>

#include "Terminal.h"
#include "Verbs.h"
#include "base/CommandLine.h"

int main(int argc, char** argv) {
  using namespace logbook::cli;
  LeaveBytesAlone();
  Frame frame(std::cout, std::cerr);
  AddCatalogue(frame);
  AddStrings(frame);
  AddList(frame);
  AddReport(frame);
  AddFind(frame);
  AddShow(frame);
  AddDue(frame);
  AddTrend(frame);
  AddDiff(frame);
  AddExport(frame);
  AddCheck(frame);
  AddDiagnose(frame);
  const logbook::CommandWords words(argc, argv);
  return frame.Run(words.Count(), words.Words());
}
