// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The logbook's handshake cell as a text property on the session bus.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include "host/Cell.h"

namespace logbook::host {

class BusCell : public Cell {
  Q_OBJECT

 public:
  explicit BusCell(const QDBusConnection& bus);

  void Watch() override;
  void Read() override;
  void Write(const QString& text) override;

 private Q_SLOTS:
  void OnPropertiesChanged(const QString& interface, const QVariantMap& changed,
                           const QStringList& invalidated);

 private:
  QDBusConnection bus_;
  QDBusServiceWatcher watcher_;
  // Counts owners of the logbook's name, so that a reply of an earlier one is told from a new
  // one's.
  int owner_ = 0;
};

}  // namespace logbook::host
