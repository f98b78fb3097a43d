// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/HostBus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QProcessEnvironment>
#include <QVariantMap>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "base/HostLinkNames.h"

namespace logbook::test {
namespace {

constexpr int kPatienceMilliseconds = 60000;

QString Name(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QProcessEnvironment Environment(const std::string& home, const QString& bus_address) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("LOGBOOK_HOME"), QString::fromStdString(home));
  environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_address);
  return environment;
}

std::string FirstWord(const std::string& path) {
  std::ifstream file(path);
  std::string word;
  file >> word;
  return word;
}

}  // namespace

bool Until(const std::function<bool()>& condition) {
  const QDeadlineTimer deadline(kPatienceMilliseconds);
  while (!condition()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  }
  return true;
}

PrivateBus::PrivateBus() {
  daemon_.start(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
  if (!Until([this] { return daemon_.canReadLine(); })) throw std::runtime_error("no dbus-daemon");
  address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
}

PrivateBus::~PrivateBus() {
  Stop();
}

void PrivateBus::Stop() {
  daemon_.terminate();
  daemon_.waitForFinished(kPatienceMilliseconds);
}

ProgramResult RunProgram(const QString& program, const QStringList& arguments,
                         const std::string& home, const QString& bus_address) {
  QProcess process;
  process.setProcessEnvironment(Environment(home, bus_address));
  process.start(program, arguments);
  const bool ended = Until([&] { return process.state() == QProcess::NotRunning; });
  const bool well = ended && process.error() == QProcess::UnknownError &&
                    process.exitStatus() == QProcess::NormalExit;
  return {well ? process.exitCode() : -1, process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

RunningHost::RunningHost(const std::string& home, const QString& bus_address,
                         const QStringList& arguments) {
  process_.setProcessEnvironment(Environment(home, bus_address));
  process_.setProcessChannelMode(QProcess::MergedChannels);
  process_.start(QStringLiteral(QUOREX_HOST_PATH), QStringList{QStringLiteral("run")} + arguments);
  const bool ready = Until([this] {
    return Output().find("waiting as") != std::string::npos ||
           process_.state() == QProcess::NotRunning;
  });
  if (!ready) throw std::runtime_error("the host does not get ready: " + Output());
}

RunningHost::~RunningHost() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.terminate();
  if (!process_.waitForFinished(kPatienceMilliseconds)) process_.kill();
}

void RunningHost::Terminate() {
  process_.terminate();
  Until([this] { return process_.state() == QProcess::NotRunning; });
}

int RunningHost::Status() {
  if (!Until([this] { return process_.state() == QProcess::NotRunning; })) return -1;
  return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
}

std::string RunningHost::Output() {
  output_ += process_.readAllStandardOutput();
  return output_.toStdString();
}

std::string RunningHost::Child(const std::string& program) {
  const std::string task = std::to_string(process_.processId());
  std::string child;
  const bool found = Until([&] {
    child = FirstWord("/proc/" + task + "/task/" + task + "/children");
    return !child.empty() && FirstWord("/proc/" + child + "/comm") == program;
  });
  return found ? child : std::string();
}

LogbookPeer::LogbookPeer(const QString& bus_address)
    : bus_(QDBusConnection::connectToBus(bus_address, QStringLiteral("peer"))) {
  bus_.registerObject(Name(kCellObjectPath), this, QDBusConnection::ExportAllProperties);
}

LogbookPeer::~LogbookPeer() {
  bus_.unregisterObject(Name(kCellObjectPath));
  QDBusConnection::disconnectFromBus(QStringLiteral("peer"));
}

void LogbookPeer::Appear() {
  bus_.registerService(Name(kLogbookBusName));
}

void LogbookPeer::Vanish() {
  bus_.unregisterService(Name(kLogbookBusName));
}

void LogbookPeer::SetText(const QString& text) {
  text_ = text;
  history_.push_back(text.toStdString());
  QDBusMessage signal = QDBusMessage::createSignal(
      Name(kCellObjectPath), QStringLiteral("org.freedesktop.DBus.Properties"),
      QStringLiteral("PropertiesChanged"));
  signal << Name(kCellInterface) << QVariantMap{{Name(kCellProperty), text_}} << QStringList();
  bus_.send(signal);
  Q_EMIT TextChanged();
}

}  // namespace logbook::test
