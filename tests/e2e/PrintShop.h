// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A workstation whose logbook prints to the PDF device, or to a printer of another name.
#pragma once

#include <ctime>
#include <memory>
#include <string>

#include "ViewerPage.h"

namespace logbook::e2e {

inline constexpr char kPdfFolder[] = "C:\\QUOREX\\PDF\\";

class PrintShop : public ReadableProgram {
 protected:
  // Skips the test on a machine without the tools that look into PDF files. The printer is "PDF".
  void SetUp() override;

  // Names the printer in the registry; the logbook looks there at each print.
  void SetPrinter(const std::string& name);
  void Start();
  MainPage& main() { return *main_; }
  // The viewer of this log, opened by a double click on its row.
  ViewerPage View(const std::string& log);
  // Opens the viewer again on the row that is current.
  ViewerPage ViewAgain(const std::string& log);

  // Waits until the print image is there. Until then it must be missing or hold the older bytes,
  // and from then on it must be whole. Returns its native path.
  std::string WaitForImage(const std::string& name, const std::string& older = "");
  std::vector<std::string> Images();

  // Notes the moment before a print; the one after it is now.
  void NoteMoment() { from_ = std::time(nullptr); }
  std::time_t from() const { return from_; }

 private:
  std::unique_ptr<MainPage> main_;
  std::time_t from_ = 0;
};

}  // namespace logbook::e2e
