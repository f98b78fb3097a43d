// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/HostRun.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSocketNotifier>
#include <QString>
#include <QStringList>
#include <cstdio>

#include "base/HostLinkNames.h"
#include "host/ControlPanel.h"

namespace logbook::host {
namespace {

constexpr int kFailure = 1;
constexpr int kNotStarted = 127;
constexpr int kSignalBase = 128;
constexpr int kFarewellMilliseconds = 3000;

void Tell(const std::string& line) {
  std::printf("quorex-host: %s\n", line.c_str());
  std::fflush(stdout);
}

void Complain(const std::string& line) {
  std::fprintf(stderr, "quorex-host: %s\n", line.c_str());
}

// Ends the event loop when the bus has gone.
class BusGuard : public QObject {
  Q_OBJECT

 public:
  explicit BusGuard(QDBusConnection bus) {
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(OnDisconnected()));
  }

 private Q_SLOTS:
  void OnDisconnected() {
    Complain("the session bus has gone");
    QCoreApplication::exit(kFailure);
  }
};

QStringList LogbookArguments(const HostOptions& options) {
  QStringList arguments = {QString::fromStdString(options.id)};
  if (options.ce) arguments << QStringLiteral("CE");
  if (options.auto_rec) arguments << QStringLiteral("AutoRec");
  return arguments;
}

void StartLogbook(QProcess& logbook, const HostOptions& options) {
  // The logbook works in the host's home, whichever way that was named.
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("LOGBOOK_HOME"),
                     QDir(QString::fromStdString(options.workstation.machine.home)).absolutePath());
  logbook.setProcessEnvironment(environment);
  logbook.setProcessChannelMode(QProcess::ForwardedChannels);
  logbook.setInputChannelMode(QProcess::ForwardedInputChannel);
  logbook.setChildProcessModifier([] { EndSignal::Release(); });
  QObject::connect(&logbook, &QProcess::finished, QCoreApplication::instance(),
                   [](int status, QProcess::ExitStatus how) {
                     const bool crashed = how == QProcess::CrashExit;
                     QCoreApplication::exit(crashed ? kSignalBase + status : status);
                   });
  QObject::connect(&logbook, &QProcess::errorOccurred, QCoreApplication::instance(),
                   [&logbook](QProcess::ProcessError error) {
                     if (error != QProcess::FailedToStart) return;
                     Complain("cannot start " + logbook.program().toStdString());
                     QCoreApplication::exit(kNotStarted);
                   });
  logbook.start(QString::fromStdString(options.start_logbook), LogbookArguments(options));
}

// A host that is told to end takes its logbook with it.
void EndLogbook(QProcess& logbook) {
  logbook.disconnect();
  if (logbook.state() == QProcess::NotRunning) return;
  logbook.terminate();
  if (!logbook.waitForFinished(kFarewellMilliseconds)) {
    logbook.kill();
    logbook.waitForFinished(kFarewellMilliseconds);
  }
}

}  // namespace

int RunHost(const HostOptions& options, const EndSignal& end_signal) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    Complain("there is no session bus");
    return kFailure;
  }
  const BusGuard guard(bus);
  ControlPanel panel(bus, options, Tell);
  if (!panel.Start()) {
    Complain("the name " + HostBusName(options.id) + " cannot be had on the session bus");
    return kFailure;
  }
  Tell("waiting as " + HostBusName(options.id));

  QSocketNotifier notifier(end_signal.Descriptor(), QSocketNotifier::Read);
  QObject::connect(&notifier, &QSocketNotifier::activated, QCoreApplication::instance(),
                   [] { QCoreApplication::exit(0); });
  QProcess logbook;
  if (!options.start_logbook.empty()) {
    // Started by the event loop: an end that comes at once must find the loop running.
    QMetaObject::invokeMethod(
        &logbook, [&] { StartLogbook(logbook, options); }, Qt::QueuedConnection);
  } else if (options.for_logbook_lifetime) {
    QObject::connect(&panel, &ControlPanel::LogbookGone, QCoreApplication::instance(),
                     [] { QCoreApplication::exit(0); });
  }
  const int status = QCoreApplication::exec();
  EndLogbook(logbook);
  return status;
}

}  // namespace logbook::host

#include "HostRun.moc"
