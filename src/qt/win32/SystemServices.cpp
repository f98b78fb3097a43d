// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SystemServices.h"

#include <QPrinter>
#include <QPrinterInfo>

#include "base/RunTimeError.h"
#include "qt/SheetPrinting.h"
#include "qt/Widgets.h"
#include "qt/win32/HelpFiles.h"
#include "qt/win32/NativeWindowSystem.h"

namespace logbook {

std::unique_ptr<HelpEngine> MakeHelpEngine(const Machine& machine, const QString& manual) {
  return std::make_unique<HelpFiles>(machine, manual);
}

std::unique_ptr<WindowSystem> MakeWindowSystem() {
  return std::make_unique<NativeWindowSystem>();
}

// Printers are painted on, by the system's own way.
void PrintOnQueue(const std::string& printer, const F1Book& sheet, const LocalTime& now,
                  const CodePage& code_page, const std::function<void()>& between_pages) {
  const QPrinterInfo info = QPrinterInfo::printerInfo(ToQt(printer));
  if (info.isNull()) throw RunTimeError(ErrorNumber::kPrinterError);
  QPrinter device(info, QPrinter::HighResolution);
  device.setDocName(ToQt(sheet.Title()));
  device.setCreator(ToQt(sheet.Title()));
  PaintSheet(device, sheet, now, code_page, between_pages);
}

}  // namespace logbook
