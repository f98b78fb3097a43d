// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// What a window with a list of nine columns costs by itself, with or without rows, or without a
// list.
//
//   bench_window ROWS|bare

#include <QAbstractTableModel>
#include <QApplication>
#include <QTreeView>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kColumns = 9;

class Rows : public QAbstractTableModel {
 public:
  explicit Rows(int rows) : rows_(rows) {}
  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : kColumns;
  }
  QVariant data(const QModelIndex& index, int role) const override {
    if (role != Qt::DisplayRole) return {};
    return QString::number(index.row() * kColumns + index.column());
  }

 private:
  int rows_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  Rows rows(argc > 1 ? std::atoi(argv[1]) : 0);
  QWidget window;
  window.resize(640, 480);
  if (argc < 2 || std::strcmp(argv[1], "bare") != 0) {
    auto* list = new QTreeView(&window);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setModel(&rows);
    list->resize(640, 400);
  }
  window.show();
  return QApplication::exec();
}
