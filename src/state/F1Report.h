// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// F1Report, the sheet that main window and viewer hold unseen and use only to print: a grid of
// texts with fonts and borders, and the settings of its pages. It knows no device and no toolkit;
// the print service lays it out (Services.h). Rows and columns count from 1 and come into being
// when a cell is written to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace logbook {

struct CellFont {
  std::string Name;
  double Size = 0;  // points
  bool Bold = false, Italic = false, Underlined = false, StruckOut = false;
  std::uint32_t Colour = 0;  // 0xBBGGRR; 0 is black
  bool operator==(const CellFont&) const = default;
};

// One edge of a cell. Styles: 0 none, 1 to 3 thin lines of growing width, 4 and above the plain
// rule that sets off a heading.
struct SheetEdge {
  int Style = 0;
  std::uint32_t Colour = 0;
  bool operator==(const SheetEdge&) const = default;
};

struct CellBorder {
  SheetEdge Left, Right, Top, Bottom;
  bool operator==(const CellBorder&) const = default;
};

// A change of borders: edges that are not named stay as they are.
struct BorderChange {
  std::optional<SheetEdge> Left, Right, Top, Bottom;
};

class F1Book {
 public:
  // What a column fit is for: the columns in use, or also those that are still to come.
  enum class Fit { kUsedColumns, kSetDefaultToo };

  void SetTitle(std::string title) { title_ = std::move(title); }
  // Cells from the first to the last row and column; -1 in all four is the whole sheet.
  void SetSelection(int first_row, int first_column, int last_row, int last_column);
  // Empties the selected cells: texts and borders go, fonts stay.
  void ClearSelection();
  void SetSheetName(std::string name) { sheet_name_ = std::move(name); }
  // Raises kInvalidProcedureCall for a row or column below 1.
  void SetText(int row, int column, std::string text);
  // Sets the borders of each selected cell. A whole-sheet selection is the cells in use.
  void SetBorder(const BorderChange& change);
  void SetFont(const CellFont& font);
  void SetDefaultFont(std::string name, double size);
  // In the language of printing/PageCodes.h.
  void SetPageHeader(std::string codes) { page_header_ = std::move(codes); }
  void SetPageFooter(std::string codes) { page_footer_ = std::move(codes); }
  // From now on the selected columns are as wide as what they hold when the sheet is printed.
  void FitColumnWidths(Fit fit);
  void SetLandscape(bool landscape) { landscape_ = landscape; }

  const std::string& Title() const { return title_; }
  const std::string& SheetName() const { return sheet_name_; }
  const std::string& PageHeader() const { return page_header_; }
  const std::string& PageFooter() const { return page_footer_; }
  bool Landscape() const { return landscape_; }
  // Last row and column that hold a text or a border; 0 on an empty sheet.
  int LastRow() const;
  int LastColumn() const;
  // Empty for a cell that was never written to.
  const std::string& Text(int row, int column) const;
  CellBorder Border(int row, int column) const;
  CellFont FontOf(int row, int column) const;
  const CellFont& DefaultFont() const { return default_font_; }
  bool ColumnIsFitted(int column) const;

 private:
  using CellPlace = std::pair<int, int>;  // row, column
  bool WholeSheetSelected() const { return first_row_ == -1; }
  bool Selected(const CellPlace& cell) const;

  std::string title_, sheet_name_, page_header_, page_footer_;
  bool landscape_ = false;
  int first_row_ = 1, first_column_ = 1, last_row_ = 1, last_column_ = 1;
  std::vector<std::vector<std::string>> texts_;  // by row and column, from 0
  std::map<CellPlace, CellBorder> borders_;
  CellFont default_font_{"Courier", 9};
  std::optional<CellFont> sheet_font_;  // of all cells that have none of their own
  std::map<CellPlace, CellFont> cell_fonts_;
  std::vector<bool> fitted_;  // by column, from 0
  bool fitted_by_default_ = false;
};

}  // namespace logbook
