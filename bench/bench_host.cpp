// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A host control panel that answers the logbook's requests over a store of bench_list, and nothing
// else. Prints "ready" once it can be asked, and "asked" after each answer.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariant>
#include <cstdio>
#include <map>

#include "base/HostLinkNames.h"

namespace {

class Host : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    static const std::map<std::string, QString> kReplies = {
        {"_exepath$", QStringLiteral("C:\\QUOREX\\")},
        {"_instpath$", QStringLiteral("C:\\QUOREX\\inst1\\")},
        {"_helppath$", QStringLiteral("C:\\QUOREX\\help\\")},
        {"_helpfile$", QStringLiteral("logbook.chm")}};
    if (message.arguments().isEmpty()) return false;
    const auto reply = kReplies.find(message.arguments().constFirst().toString().toStdString());
    if (reply == kReplies.end()) return false;
    connection.send(message.createReply(reply->second));
    std::puts("asked");
    std::fflush(stdout);
    return true;
  }
};

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  QDBusConnection bus = QDBusConnection::sessionBus();
  Host host;
  bus.registerVirtualObject(QStringLiteral("/"), &host, QDBusConnection::SubPath);
  if (!bus.registerService(QString::fromStdString(logbook::HostBusName("bench")))) return 1;
  std::puts("ready");
  std::fflush(stdout);
  return QCoreApplication::exec();
}
