// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "platform/qt/DBusCell.h"

#include "platform/HostLinkNames.h"
#include "platform/qt/Widgets.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>
#include <utility>

namespace logbook {
namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

DBusCell::DBusCell(QDBusConnection bus) : bus_(std::move(bus)), text_(QLatin1String("")) {
  bus_.registerObject(logbook::Text(kCellObjectPath), this, QDBusConnection::ExportAllProperties);
}

DBusCell::~DBusCell() {
  bus_.unregisterObject(logbook::Text(kCellObjectPath));
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
      logbook::Text(kCellObjectPath), QStringLiteral("org.freedesktop.DBus.Properties"),
      QStringLiteral("PropertiesChanged"));
  signal << logbook::Text(kCellInterface) << QVariantMap{{logbook::Text(kCellProperty), text_}}
         << QStringList();
  bus_.send(signal);
  Q_EMIT TextChanged();
}

}  // namespace logbook
