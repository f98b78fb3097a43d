// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtWindowSystem.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVariant>
#include <QWidget>

#include "qt/WindowManager.h"

namespace logbook {
namespace {

constexpr QMargins kUsualFrame(3, 22, 3, 3);

QWidget* Find(std::intptr_t window) {
  return window == 0 ? nullptr : QWidget::find(static_cast<WId>(window));
}

QString ClassOf(const QWidget& widget) {
  const QVariant name = widget.property("windowClass");
  return name.isValid() ? name.toString() : widget.objectName();
}

// A fixed size is true whatever the window system has told the toolkit so far.
QSize SizeOf(const QWidget& widget) {
  const bool fixed = widget.minimumSize() == widget.maximumSize();
  return fixed ? widget.minimumSize() : widget.size();
}

PixelRect Edges(const QRect& rect) {
  return {rect.left(), rect.top(), rect.left() + rect.width(), rect.top() + rect.height()};
}

}  // namespace

QMargins FrameOf(const QWidget& window) {
  if (const auto told = FrameByWindowManager(window)) return *told;
  const QRect inner = window.geometry(), outer = window.frameGeometry();
  // While a window comes up, what the toolkit takes for its frame may lie anywhere.
  if (!window.isVisible() || !outer.contains(inner)) return kUsualFrame;
  return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
          outer.bottom() - inner.bottom()};
}

void QtWindowSystem::SetBand(std::intptr_t window, Band band) {
  QWidget* widget = Find(window);
  if (widget == nullptr) return;
  const bool topmost = band == Band::kTopmost;
  if (widget->windowFlags().testFlag(Qt::WindowStaysOnTopHint) != topmost) {
    const bool visible = widget->isVisible();
    widget->setWindowFlag(Qt::WindowStaysOnTopHint, topmost);
    if (visible) widget->show();  // changing the flag has hidden it
  }
  widget->raise();
}

std::string QtWindowSystem::ClassName(std::intptr_t window) {
  const QWidget* widget = Find(window);
  return widget == nullptr ? std::string() : ClassOf(*widget).toStdString();
}

std::intptr_t QtWindowSystem::FindChild(std::intptr_t parent, const std::string& class_name) {
  const QWidget* widget = Find(parent);
  if (widget == nullptr) return 0;
  const auto children = widget->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  for (QWidget* child : children) {
    if (ClassOf(*child).compare(QString::fromStdString(class_name), Qt::CaseInsensitive) == 0) {
      return static_cast<std::intptr_t>(child->winId());
    }
  }
  return 0;
}

void QtWindowSystem::SetParent(std::intptr_t window, std::intptr_t parent) {
  QWidget* widget = Find(window);
  QWidget* owner = Find(parent);
  if (widget == nullptr || owner == nullptr || widget == owner) return;
  const bool visible = widget->isVisible();
  widget->setParent(owner);
  if (visible) widget->show();
}

PixelRect QtWindowSystem::ClientRect(std::intptr_t window) {
  const QWidget* widget = Find(window);
  return widget == nullptr ? PixelRect() : Edges(widget->rect());
}

PixelRect QtWindowSystem::WorkArea() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? PixelRect() : Edges(screen->availableGeometry());
}

PixelRect QtWindowSystem::NormalPosition(std::intptr_t window) {
  const QWidget* widget = Find(window);
  if (widget == nullptr) return {};
  const QRect inner(widget->geometry().topLeft(), SizeOf(*widget));
  return Edges(widget->isWindow() ? inner.marginsAdded(FrameOf(*widget)) : inner);
}

void QtWindowSystem::SetNormalPosition(std::intptr_t window, const PixelRect& place) {
  QWidget* widget = Find(window);
  if (widget == nullptr) return;
  const QRect outer(QPoint(static_cast<int>(place.Left), static_cast<int>(place.Top)),
                    QSize(static_cast<int>(place.Right - place.Left),
                          static_cast<int>(place.Bottom - place.Top)));
  if (!widget->isWindow()) return widget->setGeometry(outer);
  if (!MoveByWindowManager(*widget, outer.topLeft()))
    widget->setGeometry(outer.marginsRemoved(FrameOf(*widget)));
}

}  // namespace logbook
