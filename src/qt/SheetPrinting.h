// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Lays the sheet F1Report out through the toolkit. Printers and PDF files get the same document.
#pragma once

#include <QByteArray>
#include <QFont>
#include <QLocale>
#include <QPageSize>
#include <QString>
#include <functional>

#include "base/CodePage.h"
#include "state/F1Report.h"
#include "state/Services.h"

class QPagedPaintDevice;

namespace logbook {

// Paints all pages of the sheet: body one inch from top and bottom and three quarters from the
// sides, header and footer half an inch from the edge; pages go down the rows first, then across
// the columns. Columns of a fixed-pitch font are those of the code page's bytes (qt/SheetText.h).
// Pages of the first columns are printed whatever they hold, those of further columns if a text
// stands there. Sets the device's orientation. A sheet without cells is one page. Runs
// `between_pages`, if there is one, before each page. Raises kPrinterError if the device does not
// take the job or a page of it.
void PaintSheet(QPagedPaintDevice& device, const F1Book& sheet, const LocalTime& now,
                const CodePage& code_page, const std::function<void()>& between_pages = {});

// The sheet as a PDF document on this paper, with its fonts embedded; `between_pages` as above.
// Raises kPrinterError.
QByteArray SheetAsPdf(const F1Book& sheet, const LocalTime& now, const QPageSize& paper,
                      const CodePage& code_page, const std::function<void()>& between_pages = {});

// A4, or Letter where the machine's locale measures in inches.
QPageSize PaperOfTheLocale();

// The font for a name of the string table on paper. A fixed-pitch name that this machine lacks, or
// has only as dots, stands for a fixed-pitch font of the same widths that can be embedded.
QFont PrintFont(const CellFont& font);

// Text as it goes to paper: tabs reach to the next multiple of eight bytes of the code page, other
// control characters print nothing.
QString PrintableText(const std::string& text, const CodePage& code_page);

// Date and time as a locale, the machine's, writes them in short, but with all digits of the year.
QString PrintDate(const LocalTime& now, const QLocale& locale = QLocale::system());
QString PrintTime(const LocalTime& now, const QLocale& locale = QLocale::system());

}  // namespace logbook
