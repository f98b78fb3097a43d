// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/DBusCell.h"

#include "base/HostLinkNames.h"
#include "qt/Widgets.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>
#include <utility>

namespace logbook {
namespace {

QString PropertiesInterface() {
  return QStringLiteral("org.freedesktop.DBus.Properties");
}

// Calls of the standard interface that concern the cell, by method and signature; the toolkit
// answers all others. A caller may leave the interface of a property empty.
bool ConcernsTheCell(const QDBusMessage& call) {
  if (call.interface() != PropertiesInterface()) return false;
  const QString method = call.member() + QLatin1Char(' ') + call.signature();
  const bool is_one = method == QLatin1String("Get ss") || method == QLatin1String("Set ssv");
  if (!is_one && method != QLatin1String("GetAll s")) return false;
  const QVariantList arguments = call.arguments();
  const QString interface = arguments[0].toString();
  if (!interface.isEmpty() && interface != ToQt(kCellInterface)) return false;
  return !is_one || arguments[1].toString() == ToQt(kCellProperty);
}

}  // namespace

DBusCell::DBusCell(QDBusConnection bus, const DBusProcess& process)
    : bus_(std::move(bus)), process_(process), text_(QLatin1String("")) {
  bus_.registerVirtualObject(ToQt(kCellObjectPath), this);
}

DBusCell::~DBusCell() {
  bus_.unregisterObject(ToQt(kCellObjectPath));
}

std::string DBusCell::Text() const {
  return text_.toStdString();
}

void DBusCell::SetText(const std::string& text) {
  Take(ToQt(text));
}

void DBusCell::Take(const QString& text) {
  if (text == text_) return;
  text_ = text;
  QDBusMessage signal = QDBusMessage::createSignal(ToQt(kCellObjectPath), PropertiesInterface(),
                                                   QStringLiteral("PropertiesChanged"));
  signal << ToQt(kCellInterface) << QVariantMap{{ToQt(kCellProperty), text_}} << QStringList();
  bus_.send(signal);
}

QString DBusCell::introspect(const QString&) const {
  return QStringLiteral(
             "  <interface name=\"%1\">\n"
             "    <property name=\"%2\" type=\"s\" access=\"readwrite\"/>\n"
             "  </interface>\n")
      .arg(ToQt(kCellInterface), ToQt(kCellProperty));
}

bool DBusCell::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  if (!ConcernsTheCell(message)) return false;
  connection.send(Answer(message));
  return true;
}

QDBusMessage DBusCell::Answer(const QDBusMessage& call) {
  if (call.member() == QLatin1String("Set")) return AnswerToSet(call);
  if (call.member() == QLatin1String("GetAll"))
    return call.createReply(QVariant(QVariantMap{{ToQt(kCellProperty), text_}}));
  return call.createReply(QVariant::fromValue(QDBusVariant(text_)));
}

QDBusMessage DBusCell::AnswerToSet(const QDBusMessage& call) {
  const QVariant value = call.arguments()[2].value<QDBusVariant>().variant();
  if (value.userType() != QMetaType::QString)
    return call.createErrorReply(QDBusError::InvalidArgs,
                                 QStringLiteral("The cell holds a text and takes nothing else."));
  Take(value.toString());
  return call.createReply();
}

}  // namespace logbook
