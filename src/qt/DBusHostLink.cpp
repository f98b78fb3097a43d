// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/DBusHostLink.h"

#include "base/RunTimeError.h"
#include "qt/Widgets.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <utility>

namespace logbook {

DBusHostLink::DBusHostLink(QDBusConnection bus, int timeout)
    : bus_(std::move(bus)), timeout_(timeout) {}

std::string DBusHostLink::Request(const std::string& host_id, const std::string& topic,
                                  const std::string& item) {
  QDBusMessage call =
      QDBusMessage::createMethodCall(ToQt(HostBusName(host_id)), QLatin1Char('/') + ToQt(topic),
                                     ToQt(kHostInterface), ToQt(kHostRequestMethod));
  call.setAutoStartService(false);
  call << ToQt(item);
  const QDBusMessage reply = bus_.call(call, QDBus::Block, timeout_);
  if (reply.type() != QDBusMessage::ReplyMessage) {
    throw RunTimeError(ErrorNumber::kDeviceInputOutput, reply.errorMessage().toStdString());
  }
  if (reply.signature() != QLatin1String("s")) {
    throw RunTimeError(ErrorNumber::kDeviceInputOutput, "The host's reply is no text");
  }
  return reply.arguments().constFirst().toString().toStdString();
}

bool DBusHostLink::IsThere(const std::string& host_id) {
  QDBusConnectionInterface* daemon = bus_.isConnected() ? bus_.interface() : nullptr;
  return daemon != nullptr && daemon->isServiceRegistered(ToQt(HostBusName(host_id)));
}

}  // namespace logbook
