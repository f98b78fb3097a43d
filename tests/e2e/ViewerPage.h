// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The viewer of one log, as a user drives it.
#pragma once

#include <string>
#include <vector>

#include "Pages.h"
#include "Workplace.h"

namespace logbook::e2e {

class ViewerPage {
 public:
  // Waits for the viewer of the log with this "Date".
  ViewerPage(Desktop& desktop, const std::string& date);

  WindowId window() const { return window_; }
  std::string title() const { return title_; }

  // Chooses a report by the keys of its menu entry, such as "alt+l" and "e".
  void Choose(const std::vector<std::string>& keys);
  void PressPrint();
  void PressExit();
  void PressHelp();
  // Waits until the report pane's text begins like this.
  void WaitForReport(ScreenReader& reader, const std::string& begin);

 private:
  void Press(int left, int width);

  Desktop& desktop_;
  std::string title_;
  WindowId window_;
  Place place_;
};

// The value "Date" of a log.
std::string DateOf(const Workplace& work, const std::string& log);

}  // namespace logbook::e2e
