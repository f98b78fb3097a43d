// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtEventDelivery.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <algorithm>

namespace logbook {

int QtEventDelivery::Deliver() {
  QElapsedTimer elapsed;
  elapsed.start();
  auto* dispatcher = QAbstractEventDispatcher::instance();
  if (!dispatcher->processEvents(QEventLoop::AllEvents)) {
    QTimer alarm;
    alarm.setSingleShot(true);
    alarm.setTimerType(Qt::PreciseTimer);
    alarm.start(longest_sleep_);
    dispatcher->processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
  const std::chrono::nanoseconds taken = std::min<std::chrono::nanoseconds>(
      std::chrono::nanoseconds(elapsed.nsecsElapsed()), longest_sleep_);
  return std::max(1, static_cast<int>(taken / kPoll));
}

void QtEventDelivery::BeginWork() {
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  next_paint_ = {};
  Paint();
}

void QtEventDelivery::EndWork() {
  QGuiApplication::restoreOverrideCursor();
}

void QtEventDelivery::Paint() {
  using SteadyClock = std::chrono::steady_clock;
  if (SteadyClock::now() < next_paint_) return;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible()) continue;
    // A part that covers its own place, such as the rows of a list, is not painted with the rest.
    for (QWidget* part : window->findChildren<QWidget*>()) {
      if (!part->isWindow()) part->update();
    }
    window->repaint();
  }
  next_paint_ = SteadyClock::now() + kPaintPause;
}

}  // namespace logbook
