// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/SystemServices.h"

#include <QPrinterInfo>

#include "printing/PrintQueue.h"
#include "qt/QtHelpEngine.h"
#include "qt/QtWindowSystem.h"
#include "qt/SheetPrinting.h"
#include "qt/Widgets.h"

namespace logbook {

std::unique_ptr<HelpEngine> MakeHelpEngine(const Machine& machine, const QString& manual) {
  return std::make_unique<QtHelpEngine>(machine, manual);
}

std::unique_ptr<WindowSystem> MakeWindowSystem() {
  return std::make_unique<QtWindowSystem>();
}

void PrintOnQueue(const std::string& printer, const F1Book& sheet, const LocalTime& now,
                  const CodePage& code_page, const std::function<void()>& between_pages) {
  const QPageSize paper = QPrinterInfo::printerInfo(ToQt(printer)).defaultPageSize();
  const QByteArray bytes = SheetAsPdf(sheet, now, paper.isValid() ? paper : PaperOfTheLocale(),
                                      code_page, between_pages);
  SubmitPrintJob(printer, sheet.Title(),
                 {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

}  // namespace logbook
