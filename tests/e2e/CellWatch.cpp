// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "CellWatch.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <algorithm>
#include <stdexcept>

namespace logbook::e2e {
namespace {

const QString kService = QStringLiteral("com.norvane.Quorex.Logbook");
const QString kPath = QStringLiteral("/DDELabel");
const QString kInterface = QStringLiteral("com.norvane.Quorex.Cell");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

QString NewConnectionName() {
  static int number = 0;
  return QStringLiteral("cell-watch-%1").arg(++number);
}

}  // namespace

CellWatch::CellWatch(Desktop& desktop)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(desktop.BusAddress()),
                                         NewConnectionName())) {
  bus_.connect(QString(), kPath, kProperties, QStringLiteral("PropertiesChanged"), this,
               SLOT(OnPropertiesChanged(QString, QVariantMap, QStringList)));
}

CellWatch::~CellWatch() {
  QDBusConnection::disconnectFromBus(bus_.name());
}

void CellWatch::OnPropertiesChanged(const QString& interface, const QVariantMap& changed,
                                    const QStringList&) {
  const auto text = changed.constFind(QStringLiteral("Text"));
  if (interface == kInterface && text != changed.constEnd())
    heard_.push_back(text->toString().toStdString());
}

void CellWatch::WaitFor(const std::string& text) {
  e2e::WaitFor("the cell to read \"" + text + "\"",
               [&] { return std::find(heard_.begin(), heard_.end(), text) != heard_.end(); });
}

void CellWatch::Set(const std::string& text) {
  const auto before = heard_.size();
  QDBusMessage call =
      QDBusMessage::createMethodCall(kService, kPath, kProperties, QStringLiteral("Set"));
  call << kInterface << QStringLiteral("Text")
       << QVariant::fromValue(QDBusVariant(QString::fromStdString(text)));
  if (!bus_.send(call)) throw std::runtime_error("the cell cannot be written");
  e2e::WaitFor("the cell to take \"" + text + "\"", [&] {
    return std::find(heard_.begin() + static_cast<std::ptrdiff_t>(before), heard_.end(), text) !=
           heard_.end();
  });
}

int CellWatch::Owner() {
  const auto reply = bus_.interface()->servicePid(kService);
  return reply.isValid() ? static_cast<int>(reply.value()) : 0;
}

}  // namespace logbook::e2e
