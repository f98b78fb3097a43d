// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The logbook's handshake cell as the host sees it: a text property on the bus that comes and goes
// with the logbook. docs/host-link.md describes the values.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace logbook::host {

class Cell : public QObject {
  Q_OBJECT

 public:
  explicit Cell(const QDBusConnection& bus);

  // Looks for a logbook that is there already: Appeared follows if there is one.
  void Watch();

  // Asks for the text; TextSeen follows, unless the logbook has none or has gone.
  void Read();

  // Sets the text; Written follows when the logbook has it, Refused if it did not take it. Nothing
  // follows if the logbook has gone.
  void Write(const QString& text);

 Q_SIGNALS:
  void Appeared();
  void Vanished();
  void TextSeen(const QString& text);
  void Written(const QString& text);
  void Refused();

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
