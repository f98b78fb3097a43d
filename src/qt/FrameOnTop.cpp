// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/FrameOnTop.h"

#include <QEvent>
#include <QFrame>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <cmath>

namespace logbook {
namespace {

// Lies over the whole box and paints nothing but its border; the mouse goes through it.
class FrameOnTop : public QWidget {
 public:
  explicit FrameOnTop(QFrame* box) : QWidget(box), box_(box) {
    setObjectName(QStringLiteral("FrameOnTop"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    box->installEventFilter(this);
    for (QObject* part : box->children()) {
      if (part->isWidgetType() && part != this) part->installEventFilter(this);
    }
    setGeometry(box->rect());
    raise();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == box_ && event->type() == QEvent::Resize) setGeometry(box_->rect());
    // The box lifts its scroll bars whenever it lays its parts out.
    if (watched != box_ && event->type() == QEvent::ZOrderChange) raise();
    return QWidget::eventFilter(watched, event);
  }

  void paintEvent(QPaintEvent*) override {
    if (devicePixelRatioF() == std::floor(devicePixelRatioF())) return;
    QStyleOptionFrame option;
    option.initFrom(box_);
    option.rect = box_->rect();
    option.frameShape = box_->frameShape();
    option.lineWidth = box_->frameWidth();
    option.midLineWidth = box_->midLineWidth();
    if (box_->frameShadow() == QFrame::Sunken) option.state |= QStyle::State_Sunken;
    QPainter painter(this);
    box_->style()->drawControl(QStyle::CE_ShapedFrame, &option, &painter, box_);
  }

 private:
  QFrame* box_;
};

}  // namespace

void KeepFrameOnTop(QFrame* box) {
  new FrameOnTop(box);
}

}  // namespace logbook
