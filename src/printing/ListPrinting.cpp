// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/ListPrinting.h"

#include <cstddef>
#include <string>

#include "base/RunTimeError.h"
#include "printing/PrintBridge.h"
#include "printing/SheetSettings.h"
#include "resources/ResourceText.h"
#include "text/TextParts.h"
#include "upload/ECMSub.h"

namespace logbook {

namespace {

constexpr char kDocumentName[] = "Logbook_List";
constexpr int kListSheetName = 164;
constexpr int kCommentCharacters = 20;

}  // namespace

void FillListSheet(const ListView& list, F1Book& sheet) {
  for (int column = 1; column <= ListView::kColumns; ++column)
    sheet.SetText(1, column, list.Columns[static_cast<std::size_t>(column - 1)].Text);
  int row = 1;
  for (const ListRow& log : list.Rows) {
    ++row;
    sheet.SetText(row, 1, log.Text);
    for (int item = 1; item <= 7; ++item) sheet.SetText(row, item + 1, log.SubItem(item));
    sheet.SetText(row, ListView::kColumns, FirstCharacters(log.SubItem(8), kCommentCharacters));
  }
}

void PrintList(AppState& state, Services& services) {
  try {
    const LongWork work(services.events);
    F1Book& sheet = state.frmMain.F1Report;
    BeginSheet(sheet);
    sheet.SetSheetName(ResourceText(kListSheetName));
    FillListSheet(state.ListView1, sheet);
    FinishSheet(sheet, true);
    std::string image_path;
    PrepareDocumentOutput(state, services, kDocumentName, "", kPrintTimeOut, image_path);
    services.print.PrintSheet(sheet);
    UploadPrintImage(state, services, image_path);
  } catch (const RunTimeError&) {
    // Whoever prints sees by the printer whether it has printed.
  }
}

}  // namespace logbook
