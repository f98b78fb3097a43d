// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The handshake cell as a property on the session bus (docs/host-link.md). A write by a peer
// arrives with the window events, in the thread of the windows.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>

#include "qt/DBusProcess.h"
#include "state/Services.h"

namespace logbook {

class DBusCell : public QDBusVirtualObject, public HandshakeCell {
 public:
  // Exports the cell, empty, on this connection. Without a bus the cell works within the process.
  // `process` tells who the running logbook is, and must outlive the cell.
  DBusCell(QDBusConnection bus, const DBusProcess& process);
  ~DBusCell() override;

  std::string Text() const override;
  // Announces the new text with PropertiesChanged, unless the text is the old one.
  void SetText(const std::string& text) override;
  // True while this process is the running logbook: peers find the cell by the logbook's name.
  bool IsReachable() const override { return process_.IsRunningLogbook(); }

  // What the bus asks of the object: reading and writing the property. Anything but a text is
  // refused with the error InvalidArgs, and the cell keeps what it holds.
  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QDBusMessage Answer(const QDBusMessage& call);
  QDBusMessage AnswerToSet(const QDBusMessage& call);
  void Take(const QString& text);

  QDBusConnection bus_;
  const DBusProcess& process_;
  QString text_;
};

}  // namespace logbook
