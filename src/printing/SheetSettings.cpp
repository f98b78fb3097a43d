// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "printing/SheetSettings.h"

#include "resources/ResourceText.h"
#include "state/Fonts.h"

namespace logbook {

namespace {

constexpr int kPageOfPages = 1460;  // in the string table
constexpr int kWholeSheet = -1;

void SelectWholeSheet(F1Book& sheet) {
  sheet.SetSelection(kWholeSheet, kWholeSheet, kWholeSheet, kWholeSheet);
}

}  // namespace

void BeginSheet(F1Book& sheet) {
  sheet.SetTitle(ResourceText(112));
  SelectWholeSheet(sheet);
  sheet.ClearSelection();
}

void FinishSheet(F1Book& sheet, bool landscape) {
  const Font font = SheetFont();
  SelectWholeSheet(sheet);
  sheet.SetFont({.Name = font.Name, .Size = font.Size});
  sheet.SetDefaultFont(font.Name, font.Size);
  sheet.SetPageHeader(FontCode() + "&A");
  sheet.SetPageFooter("&R" + FontCode() + "&D &T&C" + FontCode() + ResourceText(kPageOfPages));
  SelectWholeSheet(sheet);
  sheet.FitColumnWidths(F1Book::Fit::kSetDefaultToo);
  sheet.SetLandscape(landscape);
}

std::string FontCode() {
  return "&\"" + ResourceText(105) + "\"&" + ResourceText(106);
}

}  // namespace logbook
