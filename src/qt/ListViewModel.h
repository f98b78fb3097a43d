// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// ListView1 for the toolkit's view: a copy of the list's texts as they stood when last shown, so
// that the view may paint at any time while the list is being rebuilt.
#pragma once

#include <QAbstractTableModel>

#include "state/ListView.h"

namespace logbook {

class ListViewModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  // Takes over headers and rows. The view keeps its place if no cell has changed.
  void Show(const ListView& list);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  // The cell's text; the tool tip is the text too, since most columns are narrow.
  QVariant data(const QModelIndex& index, int role) const override;
  // The header's text, likewise; its accessible description is the key that clicks it.
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  ListView shown_;
};

// The key that stands for a click on the header of a column, counted from 1: Alt and the number.
// Empty for columns whose header does nothing.
QKeySequence HeaderKey(int column);

}  // namespace logbook
