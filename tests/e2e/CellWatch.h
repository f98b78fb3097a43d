// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The handshake cell as a host sees it on the bus, and everything that it has read so far.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <string>
#include <vector>

#include "Desktop.h"

namespace logbook::e2e {

class CellWatch : public QObject {
  Q_OBJECT

 public:
  // Begins to listen on the desktop's bus.
  explicit CellWatch(Desktop& desktop);
  ~CellWatch() override;

  // The texts that the cell has announced, in order; each change once, whoever made it.
  const std::vector<std::string>& Heard() const { return heard_; }
  // Waits until the cell has announced this text.
  void WaitFor(const std::string& text);
  // Writes the cell.
  void Set(const std::string& text);
  // The process that owns the cell, 0 for none.
  int Owner();

 private Q_SLOTS:
  void OnPropertiesChanged(const QString& interface, const QVariantMap& changed,
                           const QStringList& invalidated);

 private:
  QDBusConnection bus_;
  std::vector<std::string> heard_;
};

}  // namespace logbook::e2e
