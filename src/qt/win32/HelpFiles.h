// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The platform's two help engines. The one for ".chm" files is loaded when it is first called. A
// machine that lacks it, and a help book of ours (help/HelpBook.h), is served by the program's own
// help window.
#pragma once

#include <QString>

#include "qt/QtHelpEngine.h"

namespace logbook {

class HelpFiles : public HelpEngine {
 public:
  HelpFiles(const Machine& machine, const QString& manual)
      : machine_(machine), own_(machine, manual) {}

  void HtmlHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
                std::uint32_t& data) override;
  void WinHelp(std::intptr_t window, const std::string& file, std::uint32_t command,
               std::uint32_t data) override;

 private:
  const Machine& machine_;
  QtHelpEngine own_;
};

}  // namespace logbook
