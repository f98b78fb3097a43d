// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/DBusCell.h"

#include "base/HostLinkNames.h"
#include "qt/Widgets.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>
#include <utility>

namespace logbook {

DBusCell::DBusCell(QDBusConnection bus) : bus_(std::move(bus)), text_(QLatin1String("")) {
  bus_.registerObject(ToQt(kCellObjectPath), this, QDBusConnection::ExportAllProperties);
}

DBusCell::~DBusCell() {
  bus_.unregisterObject(ToQt(kCellObjectPath));
}

std::string DBusCell::Text() const {
  return text_.toStdString();
}

void DBusCell::SetText(const std::string& text) {
  SetPropertyText(ToQt(text));
}

void DBusCell::SetPropertyText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  QDBusMessage signal = QDBusMessage::createSignal(
      ToQt(kCellObjectPath), QStringLiteral("org.freedesktop.DBus.Properties"),
      QStringLiteral("PropertiesChanged"));
  signal << ToQt(kCellInterface) << QVariantMap{{ToQt(kCellProperty), text_}} << QStringList();
  bus_.send(signal);
  Q_EMIT TextChanged();
}

}  // namespace logbook
