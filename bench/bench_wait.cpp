// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The wait for a busy host, as the program waits at its end: the cell is looked at after each
// delivery of events until it holds what is waited for. Needs a session bus.
//
//   bench_wait idle SECONDS     wait.cpu (share of a core) and wait.wakeups (a second) while
//   nothing
//                               happens
//   bench_wait react TIMES      wait.reaction: seconds from a peer's writing of the cell to the
//                               return to the caller

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <thread>

#include "Samples.h"
#include "base/HostLinkNames.h"
#include "qt/DBusCell.h"
#include "qt/DBusProcess.h"
#include "qt/QtEventDelivery.h"

namespace {

using namespace logbook;
using namespace logbook::bench;

QString Name(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Voluntary switches of all threads so far.
double WakeUps() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_nvcsw);
}

void Idle(double seconds) {
  DBusProcess process(QDBusConnection::sessionBus());
  process.OtherInstanceRuns();  // takes the name by which the cell is found
  DBusCell cell(QDBusConnection::sessionBus(), process);
  QtEventDelivery events;
  cell.SetText("1");
  for (int settling = 0; settling < 10; ++settling) events.Deliver();
  const double start = WallSeconds(), cpu = CpuSeconds(), wake_ups = WakeUps();
  while (cell.Text() == "1" && WallSeconds() - start < seconds) events.Deliver();
  const double taken = WallSeconds() - start;
  Report("wait.cpu", (CpuSeconds() - cpu) / taken);
  Report("wait.wakeups", (WakeUps() - wake_ups) / taken);
}

// A peer with a connection of its own that writes the cell; gives the time of the writing.
class Peer {
 public:
  void Write(int pause_ms) {
    thread_ = std::thread([this, pause_ms] {
      std::this_thread::sleep_for(std::chrono::milliseconds(pause_ms));
      QDBusMessage set = QDBusMessage::createMethodCall(
          QDBusConnection::sessionBus().baseService(), Name(kCellObjectPath),
          QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
      set << Name(kCellInterface) << Name(kCellProperty)
          << QVariant::fromValue(QDBusVariant(QStringLiteral("0")));
      written_ = WallSeconds();
      bus_.send(set);
    });
  }
  double Join() {
    thread_.join();
    return written_;
  }

 private:
  QDBusConnection bus_ =
      QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("peer"));
  std::thread thread_;
  double written_ = 0;
};

void React(int times) {
  DBusProcess process(QDBusConnection::sessionBus());
  process.OtherInstanceRuns();  // takes the name by which the cell is found
  DBusCell cell(QDBusConnection::sessionBus(), process);
  QtEventDelivery events;
  Peer peer;
  for (int time = 0; time < times; ++time) {
    cell.SetText("1");
    peer.Write(100 + 17 * time % 190);
    while (cell.Text() == "1") events.Deliver();
    const double seen = WallSeconds();
    Report("wait.reaction", seen - peer.Join());
  }
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  if (argc != 3 || !QDBusConnection::sessionBus().isConnected()) {
    std::cerr << "usage: bench_wait idle SECONDS | react TIMES (with a session bus)\n";
    return 2;
  }
  if (std::strcmp(argv[1], "idle") == 0) Idle(std::atof(argv[2]));
  if (std::strcmp(argv[1], "react") == 0) React(std::atoi(argv[2]));
  return 0;
}
