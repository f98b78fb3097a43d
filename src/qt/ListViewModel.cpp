// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/ListViewModel.h"

#include <QKeySequence>
#include <algorithm>

#include "qt/Widgets.h"

namespace logbook {
namespace {

constexpr int kFirstValueColumn = 3;
constexpr int kLastValueColumn = 8;

bool SameCells(const ListView& a, const ListView& b) {
  return std::equal(a.Rows.begin(), a.Rows.end(), b.Rows.begin(), b.Rows.end(),
                    [](const ListRow& x, const ListRow& y) {
                      return x.Text == y.Text && x.SubItems == y.SubItems;
                    });
}

}  // namespace

QKeySequence HeaderKey(int column) {
  if (column < kFirstValueColumn || column > kLastValueColumn) return {};
  return QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_0 + column));
}

void ListViewModel::Show(const ListView& list) {
  if (!SameCells(shown_, list)) {
    beginResetModel();
    shown_ = list;
    endResetModel();
    return;
  }
  shown_ = list;
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, ListView::kColumns - 1);
}

int ListViewModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.Rows.size());
}

int ListViewModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ListView::kColumns;
}

QVariant ListViewModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  const ListRow& row = shown_.Rows.at(static_cast<std::size_t>(index.row()));
  return ToQt(index.column() == 0 ? row.Text : row.SubItem(index.column()));
}

QVariant ListViewModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= ListView::kColumns) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return ToQt(shown_.Columns.at(static_cast<std::size_t>(section)).Text);
    case Qt::AccessibleDescriptionRole:
      return HeaderKey(section + 1).toString(QKeySequence::NativeText);
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    default:
      return {};
  }
}

}  // namespace logbook
