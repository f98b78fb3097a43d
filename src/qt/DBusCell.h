// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The handshake cell as a property on the session bus (docs/host-link.md). A write by a peer
// arrives with the window events, in the thread of the windows.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include "state/Services.h"

namespace logbook {

class DBusCell : public QObject, public HandshakeCell {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "com.norvane.Quorex.Cell")
  Q_PROPERTY(QString Text READ PropertyText WRITE SetPropertyText NOTIFY TextChanged)

 public:
  // Exports the cell, empty, on this connection. Without a bus the cell works within the process.
  explicit DBusCell(QDBusConnection bus);
  ~DBusCell() override;

  std::string Text() const override;
  // Announces the new text with PropertiesChanged, unless the text is the old one.
  void SetText(const std::string& text) override;
  // True while there is a bus.
  bool IsReachable() const override { return bus_.isConnected(); }

  QString PropertyText() const { return text_; }
  void SetPropertyText(const QString& text);

 Q_SIGNALS:
  void TextChanged();

 private:
  QDBusConnection bus_;
  QString text_;
};

}  // namespace logbook
