// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A message bus of the test's own: no test touches the user's session.
#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QString>

namespace logbook::test {

class PrivateBus {
 public:
  // Starts a daemon, or joins the one that the parent process of a death test has started.
  PrivateBus();
  ~PrivateBus();

  // False where no daemon could be started.
  bool Runs() const { return !address_.isEmpty(); }
  const QString& Address() const { return address_; }
  // A new connection. It is closed with this object.
  QDBusConnection Connect();
  // Ends the daemon that this object has started.
  void Stop();

 private:
  QProcess daemon_;
  QString address_;
  QStringList names_;
};

}  // namespace logbook::test
