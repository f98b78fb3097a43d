// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "state/F1Report.h"

#include <algorithm>

#include "base/RunTimeError.h"

namespace logbook {

namespace {

const std::string kNoText;

void RequirePlace(int row, int column) {
  if (row < 1 || column < 1) throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
}

}  // namespace

void F1Book::SetSelection(int first_row, int first_column, int last_row, int last_column) {
  const bool whole = first_row == -1 && first_column == -1 && last_row == -1 && last_column == -1;
  if (!whole) {
    RequirePlace(first_row, first_column);
    if (last_row < first_row || last_column < first_column)
      throw RunTimeError(ErrorNumber::kInvalidProcedureCall);
  }
  first_row_ = first_row;
  first_column_ = first_column;
  last_row_ = last_row;
  last_column_ = last_column;
}

bool F1Book::Selected(const CellPlace& cell) const {
  if (WholeSheetSelected()) return true;
  return cell.first >= first_row_ && cell.first <= last_row_ && cell.second >= first_column_ &&
         cell.second <= last_column_;
}

void F1Book::ClearSelection() {
  if (WholeSheetSelected()) {
    texts_.clear();
    borders_.clear();
    return;
  }
  const int last_row = std::min(last_row_, static_cast<int>(texts_.size()));
  for (int row = first_row_; row <= last_row; ++row) {
    auto& cells = texts_[static_cast<std::size_t>(row - 1)];
    const int last_column = std::min(last_column_, static_cast<int>(cells.size()));
    for (int column = first_column_; column <= last_column; ++column)
      cells[static_cast<std::size_t>(column - 1)].clear();
  }
  std::erase_if(borders_, [this](const auto& entry) { return Selected(entry.first); });
}

void F1Book::SetText(int row, int column, std::string text) {
  RequirePlace(row, column);
  const auto row_index = static_cast<std::size_t>(row - 1);
  const auto column_index = static_cast<std::size_t>(column - 1);
  if (texts_.size() <= row_index) texts_.resize(row_index + 1);
  auto& cells = texts_[row_index];
  if (cells.size() <= column_index) cells.resize(column_index + 1);
  cells[column_index] = std::move(text);
}

void F1Book::SetBorder(const BorderChange& change) {
  const bool whole = WholeSheetSelected();
  const int first_row = whole ? 1 : first_row_;
  const int first_column = whole ? 1 : first_column_;
  const int last_row = whole ? LastRow() : last_row_;
  const int last_column = whole ? LastColumn() : last_column_;
  for (int row = first_row; row <= last_row; ++row) {
    for (int column = first_column; column <= last_column; ++column) {
      CellBorder& border = borders_[{row, column}];
      border.Left = change.Left.value_or(border.Left);
      border.Right = change.Right.value_or(border.Right);
      border.Top = change.Top.value_or(border.Top);
      border.Bottom = change.Bottom.value_or(border.Bottom);
    }
  }
}

void F1Book::SetFont(const CellFont& font) {
  if (WholeSheetSelected()) {
    sheet_font_ = font;
    cell_fonts_.clear();
    return;
  }
  for (int row = first_row_; row <= last_row_; ++row) {
    for (int column = first_column_; column <= last_column_; ++column)
      cell_fonts_[{row, column}] = font;
  }
}

void F1Book::SetDefaultFont(std::string name, double size) {
  default_font_ = {std::move(name), size};
}

void F1Book::FitColumnWidths(Fit fit) {
  if (WholeSheetSelected() || fit == Fit::kSetDefaultToo) fitted_by_default_ = true;
  if (WholeSheetSelected()) {
    fitted_.clear();
    return;
  }
  const auto last = static_cast<std::size_t>(last_column_);
  if (fitted_.size() < last) fitted_.resize(last, fitted_by_default_);
  for (std::size_t i = static_cast<std::size_t>(first_column_ - 1); i < last; ++i)
    fitted_[i] = true;
}

int F1Book::LastRow() const {
  int last = borders_.empty() ? 0 : borders_.rbegin()->first.first;
  for (std::size_t i = texts_.size(); i > static_cast<std::size_t>(last); --i) {
    const auto& cells = texts_[i - 1];
    const auto filled = [](const std::string& text) { return !text.empty(); };
    if (std::any_of(cells.begin(), cells.end(), filled)) return static_cast<int>(i);
  }
  return last;
}

int F1Book::LastColumn() const {
  std::size_t last = 0;
  for (const auto& [place, border] : borders_)
    last = std::max(last, static_cast<std::size_t>(place.second));
  for (const auto& cells : texts_) {
    for (std::size_t i = cells.size(); i > last; --i) {
      if (!cells[i - 1].empty()) last = i;
    }
  }
  return static_cast<int>(last);
}

const std::string& F1Book::Text(int row, int column) const {
  const auto row_index = static_cast<std::size_t>(row - 1);
  const auto column_index = static_cast<std::size_t>(column - 1);
  if (row < 1 || row_index >= texts_.size()) return kNoText;
  const auto& cells = texts_[row_index];
  return column < 1 || column_index >= cells.size() ? kNoText : cells[column_index];
}

CellBorder F1Book::Border(int row, int column) const {
  const auto found = borders_.find({row, column});
  return found == borders_.end() ? CellBorder() : found->second;
}

CellFont F1Book::FontOf(int row, int column) const {
  const auto found = cell_fonts_.find({row, column});
  return found == cell_fonts_.end() ? sheet_font_.value_or(default_font_) : found->second;
}

bool F1Book::ColumnIsFitted(int column) const {
  const auto index = static_cast<std::size_t>(column - 1);
  return index < fitted_.size() ? fitted_[index] : fitted_by_default_;
}

}  // namespace logbook
