// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The process on the session bus: the running logbook is the one that owns the logbook's name.
#pragma once

#include <QDBusConnection>

#include "state/Services.h"

namespace logbook {

class DBusProcess : public Process {
 public:
  explicit DBusProcess(QDBusConnection bus);

  // Asks for the name without queueing. Without a bus there is no other instance.
  bool OtherInstanceRuns() override;
  // Gives the name back.
  void Resign() override;
  // True while this process owns the name, which it loses with the bus.
  bool IsRunningLogbook() const { return owns_name_ && bus_.isConnected(); }
  // Lets messages that wait to be sent go out first, 1 s at most: the last value of the handshake
  // cell is among them. Runs no destructor.
  [[noreturn]] void End(int status) override;

 private:
  QDBusConnection bus_;
  bool owns_name_ = false;
};

}  // namespace logbook
