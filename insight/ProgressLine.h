// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The line that tells how far an update of the index has come, for a terminal: steps, rate, time
// left. Pure.
#pragma once

#include <string>

#include "insight/IndexUpdate.h"

namespace logbook::insight {

// The line after so many seconds of this step, such as "reading logs: 1200 of 10000, 850/s, 10 s
// left"; without rate and time left where nothing is done yet. Raises nothing.
std::string ProgressText(const UpdateProgress& progress, double seconds);

// Decides when a line is due: nothing in the first second, then each tenth of one.
class ProgressPace {
 public:
  // The line to be shown now; empty if none is due. `now` is any clock in seconds that never goes
  // back. A new step begins its own count.
  std::string Line(const UpdateProgress& progress, double now);
  // True if a line was shown, so that it has to be wiped out.
  bool HasShown() const { return shown_; }

 private:
  bool begun_ = false;
  bool shown_ = false;
  double begin_ = 0;
  double step_begin_ = 0;
  double last_ = 0;
  UpdateProgress::Step step_ = UpdateProgress::Step::kLooking;
};

}  // namespace logbook::insight
