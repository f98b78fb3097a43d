// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/HostRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <cstdio>

#include "host/ControlPanel.h"
#include "host/Seat.h"

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

QStringList LogbookArguments(const HostOptions& options) {
  QStringList arguments = {QString::fromStdString(options.id)};
  if (options.ce) arguments << QStringLiteral("CE");
  if (options.auto_rec) arguments << QStringLiteral("AutoRec");
  return arguments;
}

void StartLogbook(QProcess& logbook, const HostOptions& options) {
  // The logbook works in the host's home, whichever way that was named, or in none, too.
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  const QString home = QString::fromStdString(options.workstation.machine.home);
  environment.remove(QStringLiteral("LOGBOOK_HOME"));
  if (!home.isEmpty())
    environment.insert(QStringLiteral("LOGBOOK_HOME"), QDir(home).absolutePath());
  logbook.setProcessEnvironment(environment);
  logbook.setProcessChannelMode(QProcess::ForwardedChannels);
  logbook.setInputChannelMode(QProcess::ForwardedInputChannel);
  LetWishesThrough(logbook);
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
  const std::unique_ptr<Seat> seat = MakeSeat(options, [](const std::string& reason) {
    Complain(reason);
    QCoreApplication::exit(kFailure);
  });
  ControlPanel panel(*seat, options, Tell);
  std::string reason;
  if (!panel.Start(reason)) {
    Complain(reason);
    return kFailure;
  }
  Tell("waiting as " + seat->Name());

  const std::unique_ptr<QObject> wish = NotifyOfEnd(end_signal, [] { QCoreApplication::exit(0); });
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
