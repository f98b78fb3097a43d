// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/ReportList.h"

#include "qt/FrameOnTop.h"
#include "qt/Twips.h"
#include "qt/VisibleEdges.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QStyle>
#include <QStyleOptionHeader>
#include <QStyledItemDelegate>
#include <QTreeView>

namespace logbook {
namespace {

constexpr int kAirBetweenRows = 60;    // twips
constexpr int kNarrowestColumn = 300;  // twips

class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, Pixels(kAirBetweenRows));
  }
};

// Some versions of the toolkit cut the text of a narrow header without a sign.
class Header : public QHeaderView {
 public:
  using QHeaderView::QHeaderView;

 protected:
  void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override {
    QHeaderView::initStyleOptionForIndex(option, section);
    const int margins = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, option, this);
    option->text = option->fontMetrics.elidedText(option->text, Qt::ElideRight,
                                                  sectionSize(section) - margins);
  }
};

// The mark of the key focus would look like a selected row.
class SelectionStyle : public VisibleEdges {
 public:
  explicit SelectionStyle(const QAbstractItemView* list) : list_(list) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
    if (element == PE_FrameFocusRect && !list_->selectionModel()->hasSelection()) return;
    VisibleEdges::drawPrimitive(element, option, painter, widget);
  }

 private:
  const QAbstractItemView* list_;
};

// Sees the keys of a list before it does. The list itself moves to the first or last row and
// selects it, but does nothing where it stands there already.
class EndKeys : public QObject {
 public:
  explicit EndKeys(QAbstractItemView* list) : QObject(list), list_(list) {
    list->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::KeyPress) Take(*static_cast<QKeyEvent*>(event));
    return QObject::eventFilter(watched, event);
  }

 private:
  void Take(const QKeyEvent& event) {
    const int last = list_->model()->rowCount() - 1;
    if ((event.modifiers() & Qt::ControlModifier) != 0) return;
    if ((event.key() == Qt::Key_Home && list_->currentIndex().row() == 0) ||
        (event.key() == Qt::Key_End && list_->currentIndex().row() == last))
      SelectCurrentRow(list_);
  }

  QAbstractItemView* list_;
};

}  // namespace

void ShowSelectionAlone(QAbstractItemView* list) {
  auto* style = new SelectionStyle(list);
  style->setParent(list);
  list->setStyle(style);
  new EndKeys(list);
}

void SelectCurrentRow(QAbstractItemView* list) {
  const QModelIndex current = list->currentIndex();
  if (!current.isValid() || list->selectionModel()->isSelected(current)) return;
  list->selectionModel()->select(current,
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QTreeView* NewReportList(QWidget* parent) {
  auto* list = new QTreeView(parent);
  list->setItemDelegate(new RowDelegate(list));
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setAllColumnsShowFocus(true);
  list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list->setSelectionBehavior(QAbstractItemView::SelectRows);
  list->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list->setExpandsOnDoubleClick(false);
  list->setTabKeyNavigation(false);
  ShowSelectionAlone(list);
  KeepFrameOnTop(list);

  auto* header = new Header(Qt::Horizontal, list);
  list->setHeader(header);  // this makes it a header that cannot be clicked
  header->setObjectName(QStringLiteral("ColumnHeaders"));
  header->setStretchLastSection(false);
  header->setSectionsMovable(false);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setMinimumSectionSize(Pixels(kNarrowestColumn));
  return list;
}

}  // namespace logbook
