// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The services whose toolkit side differs from system to system.
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <string>

#include "base/CodePage.h"
#include "base/Machine.h"
#include "state/F1Report.h"
#include "state/Services.h"

namespace logbook {

// The engine for help files: the system's own where there is one, else the program's. `manual` is
// the native path of the index of the program's own manual. Never null.
std::unique_ptr<HelpEngine> MakeHelpEngine(const Machine& machine, const QString& manual);

// The placing of windows: by the system's own calls where they are the platform's, else by the
// toolkit. Never null.
std::unique_ptr<WindowSystem> MakeWindowSystem();

// Prints the sheet on a printer of this name, on its own paper; `between_pages` as in
// SheetPrinting.h. Raises kPrinterError.
void PrintOnQueue(const std::string& printer, const F1Book& sheet, const LocalTime& now,
                  const CodePage& code_page, const std::function<void()>& between_pages);

}  // namespace logbook
