// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/DBusProcess.h"

#include "base/HostLinkNames.h"
#include "qt/Widgets.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace logbook {
namespace {

constexpr int kFlushTimeoutMilliseconds = 1000;

}  // namespace

DBusProcess::DBusProcess(QDBusConnection bus) : bus_(std::move(bus)) {}

bool DBusProcess::OtherInstanceRuns() {
  QDBusConnectionInterface* daemon = bus_.isConnected() ? bus_.interface() : nullptr;
  if (daemon == nullptr) return false;
  const auto reply =
      daemon->registerService(ToQt(kLogbookBusName), QDBusConnectionInterface::DontQueueService,
                              QDBusConnectionInterface::DontAllowReplacement);
  owns_name_ = reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
  return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered;
}

void DBusProcess::Resign() {
  if (!IsRunningLogbook()) return;
  bus_.interface()->unregisterService(ToQt(kLogbookBusName));
  owns_name_ = false;
}

void DBusProcess::End(int status) {
  // Messages of one connection are handled in order: a reply proves that all earlier ones left.
  if (bus_.isConnected()) {
    bus_.call(QDBusMessage::createMethodCall(
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                  QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")),
              QDBus::Block, kFlushTimeoutMilliseconds);
  }
  std::fflush(nullptr);
  std::_Exit(status);
}

}  // namespace logbook
