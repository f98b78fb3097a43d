// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/ReportList.h"

#include "qt/Twips.h"

#include <QHeaderView>
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

}  // namespace

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
