// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/BusCell.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <string_view>

#include "base/HostLinkNames.h"

namespace logbook::host {
namespace {

QString Name(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString PropertiesInterface() {
  return QStringLiteral("org.freedesktop.DBus.Properties");
}

QDBusMessage PropertyCall(const QString& method) {
  QDBusMessage call = QDBusMessage::createMethodCall(Name(kLogbookBusName), Name(kCellObjectPath),
                                                     PropertiesInterface(), method);
  call << Name(kCellInterface) << Name(kCellProperty);
  call.setAutoStartService(false);
  return call;
}

}  // namespace

BusCell::BusCell(const QDBusConnection& bus)
    : bus_(bus), watcher_(Name(kLogbookBusName), bus, QDBusServiceWatcher::WatchForOwnerChange) {
  connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
          [this](const QString&, const QString& old_owner, const QString& new_owner) {
            ++owner_;
            if (!old_owner.isEmpty()) Q_EMIT Vanished();
            if (!new_owner.isEmpty()) Q_EMIT Appeared();
          });
  bus_.connect(Name(kLogbookBusName), Name(kCellObjectPath), PropertiesInterface(),
               QStringLiteral("PropertiesChanged"), this,
               SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList)));
}

void BusCell::Watch() {
  if (bus_.interface()->isServiceRegistered(Name(kLogbookBusName))) Q_EMIT Appeared();
}

void BusCell::Read() {
  auto* const reply =
      new QDBusPendingCallWatcher(bus_.asyncCall(PropertyCall(QStringLiteral("Get"))), this);
  connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, owner = owner_] {
    const QDBusPendingReply<QDBusVariant> text = *reply;
    reply->deleteLater();
    if (owner == owner_ && text.isValid()) Q_EMIT TextSeen(text.value().variant().toString());
  });
}

void BusCell::Write(const QString& text) {
  QDBusMessage call = PropertyCall(QStringLiteral("Set"));
  call << QVariant::fromValue(QDBusVariant(text));
  auto* const reply = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
  connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, text, owner = owner_] {
    reply->deleteLater();
    if (owner != owner_) return;
    if (reply->isError()) {
      Q_EMIT Refused();
    } else {
      Q_EMIT Written(text);
    }
  });
}

void BusCell::OnPropertiesChanged(const QString& interface, const QVariantMap& changed,
                                  const QStringList& invalidated) {
  const QString property = Name(kCellProperty);
  if (interface != Name(kCellInterface)) return;
  if (changed.contains(property)) {
    Q_EMIT TextSeen(changed.value(property).toString());
  } else if (invalidated.contains(property)) {
    Read();
  }
}

}  // namespace logbook::host
