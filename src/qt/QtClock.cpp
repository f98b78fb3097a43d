// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/QtClock.h"

#include <QDateTime>
#include <QThread>

namespace logbook {

LocalTime QtClock::Now() {
  const QDateTime now = QDateTime::currentDateTime();
  return {now.date().year(), now.date().month(),  now.date().day(),
          now.time().hour(), now.time().minute(), now.time().second()};
}

void QtClock::Sleep(int milliseconds) {
  QThread::msleep(static_cast<unsigned long>(milliseconds));
}

}  // namespace logbook
