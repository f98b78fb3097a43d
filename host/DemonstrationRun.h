// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One run at the demonstration workstation: makes it where it is missing, then is its host and
// starts its logbook, until that ends.
#pragma once

#include <optional>
#include <string>

#include "base/EndSignal.h"
#include "host/InstrumentBuild.h"

namespace logbook::host {

struct DemonstrationOptions {
  std::string folder;
  std::string programs;  // folder of logbook and ecm-agent
  std::string manual;    // folder of the help book
  std::optional<InstrumentBuild> build;
  std::optional<int> code_page;  // of a new one
  bool fresh = false;            // throws an older demonstration away
  bool unasked = false;          // without a question
  bool auto_rec = false;  // one automatic record instead of the window, and what has become of it
  bool ce = false;
};

// Returns the exit status: that of the logbook, 1 if the question is answered with no or what was
// recorded does not arrive. Raises std::runtime_error as Demonstration does, and, before anything
// is told or changed, if the demonstration or another host of its name is running. Needs a
// QCoreApplication and a session bus.
int RunDemonstration(const DemonstrationOptions& options, const EndSignal& end_signal);

}  // namespace logbook::host
