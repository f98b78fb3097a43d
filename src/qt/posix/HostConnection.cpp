// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "qt/HostConnection.h"

#include <QDBusConnection>

#include "qt/DBusCell.h"
#include "qt/DBusHostLink.h"
#include "qt/DBusProcess.h"

namespace logbook {
namespace {

class BusConnection : public HostConnection {
 public:
  explicit BusConnection(const QDBusConnection& bus)
      : host_(bus), process_(bus), cell_(bus, process_) {}

  HostLink& Link() override { return host_; }
  HandshakeCell& Cell() override { return cell_; }
  Process& Itself() override { return process_; }

 private:
  DBusHostLink host_;
  DBusProcess process_;
  DBusCell cell_;
};

}  // namespace

std::unique_ptr<HostConnection> ConnectToHost(const CodePage&) {
  return std::make_unique<BusConnection>(QDBusConnection::sessionBus());
}

}  // namespace logbook
