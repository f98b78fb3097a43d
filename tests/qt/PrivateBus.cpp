// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "PrivateBus.h"

#include <QStandardPaths>

namespace logbook::test {

namespace {

constexpr char kAddressVariable[] = "LOGBOOK_TEST_BUS";

}  // namespace

PrivateBus::PrivateBus() {
  address_ = qEnvironmentVariable(kAddressVariable);
  if (Runs()) return;
  daemon_.start(
      QStringLiteral("dbus-daemon"),
      {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
       QStringLiteral("--print-address=1"), QStringLiteral("--address=unix:tmpdir=/tmp")});
  if (!daemon_.waitForStarted() || !daemon_.waitForReadyRead()) return;
  address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
  qputenv(kAddressVariable, address_.toUtf8());
}

PrivateBus::~PrivateBus() {
  for (const QString& name : names_) QDBusConnection::disconnectFromBus(name);
  Stop();
}

void PrivateBus::Stop() {
  if (daemon_.state() == QProcess::NotRunning) return;
  qunsetenv(kAddressVariable);
  daemon_.terminate();
  daemon_.waitForFinished();
}

QDBusConnection PrivateBus::Connect() {
  names_ << QStringLiteral("private-%1-%2").arg(quintptr(this)).arg(names_.size());
  return QDBusConnection::connectToBus(address_, names_.last());
}

}  // namespace logbook::test
