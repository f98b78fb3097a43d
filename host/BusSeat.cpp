// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QProcess>
#include <QSocketNotifier>
#include <utility>

#include "base/HostLinkNames.h"
#include "host/BusCell.h"
#include "host/Jobs.h"
#include "host/Seat.h"

namespace logbook::host {
namespace {

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

// The object /CPWAIT. Replies with an error to an item that there is not, and never replies if the
// host is deaf.
class RequestObject : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "com.norvane.Quorex.Host")

 public:
  explicit RequestObject(const HostOptions& options) : options_(options) {}

 public Q_SLOTS:
  Q_SCRIPTABLE QString Request(const QString& item);

 private:
  const HostOptions& options_;
};

QString RequestObject::Request(const QString& item) {
  if (options_.attention == Attention::kDeaf) {
    setDelayedReply(true);
    return {};
  }
  const auto text = ItemText(options_.workstation, item.toStdString());
  if (!text) {
    sendErrorReply(QStringLiteral("com.norvane.Quorex.Host.Error.UnknownItem"),
                   QStringLiteral("There is no item \"%1\".").arg(item));
    return {};
  }
  return Text(*text);
}

// Tells when the bus has gone.
class BusGuard : public QObject {
  Q_OBJECT

 public:
  BusGuard(QDBusConnection bus, std::function<void(const std::string&)> lost)
      : lost_(std::move(lost)) {
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(OnDisconnected()));
  }

 private Q_SLOTS:
  void OnDisconnected() { lost_("the session bus has gone"); }

 private:
  std::function<void(const std::string&)> lost_;
};

class BusSeat : public Seat {
 public:
  BusSeat(const HostOptions& options, std::function<void(const std::string&)> lost)
      : options_(options),
        bus_(QDBusConnection::sessionBus()),
        guard_(bus_, std::move(lost)),
        requests_(options),
        cell_(bus_) {}

  bool IsTaken() override {
    return bus_.isConnected() && bus_.interface()->isServiceRegistered(Text(Name()));
  }
  bool Take(std::string& reason) override {
    if (!bus_.isConnected()) {
      reason = "there is no session bus";
      return false;
    }
    bus_.registerObject(Text(std::string(kHostObjectPath)), &requests_,
                        QDBusConnection::ExportScriptableSlots);
    if (bus_.registerService(Text(Name()))) return true;
    reason = "the name " + Name() + " cannot be had on the session bus";
    return false;
  }
  std::string Name() const override { return HostBusName(options_.id); }
  Cell& LogbookCell() override { return cell_; }

 private:
  const HostOptions& options_;
  QDBusConnection bus_;
  BusGuard guard_;
  RequestObject requests_;
  BusCell cell_;
};

}  // namespace

std::unique_ptr<Seat> MakeSeat(const HostOptions& options,
                               std::function<void(const std::string&)> lost) {
  return std::make_unique<BusSeat>(options, std::move(lost));
}

std::unique_ptr<QObject> NotifyOfEnd(const EndSignal& end_signal, std::function<void()> end) {
  auto notifier = std::make_unique<QSocketNotifier>(end_signal.Descriptor(), QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, QCoreApplication::instance(),
                   std::move(end));
  return notifier;
}

void LetWishesThrough(QProcess& program) {
  program.setChildProcessModifier([] { EndSignal::Release(); });
}

}  // namespace logbook::host

#include "BusSeat.moc"
