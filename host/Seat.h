// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The host's place in the link to the logbook, on the session bus or in DDE, and what else of a run
// differs from system to system.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>

#include "base/EndSignal.h"
#include "host/Cell.h"
#include "host/HostOptions.h"

class QProcess;

namespace logbook::host {

class Seat {
 public:
  virtual ~Seat() = default;
  // Whether another program has the host's name now.
  virtual bool IsTaken() = 0;
  // Takes the host's name, under which requests are answered from now on. False with a reason if it
  // cannot be had.
  virtual bool Take(std::string& reason) = 0;
  // The name, for the operator.
  virtual std::string Name() const = 0;
  virtual Cell& LogbookCell() = 0;
};

// `lost` is called with a reason if the link itself goes away. The options must outlive the seat.
std::unique_ptr<Seat> MakeSeat(const HostOptions& options,
                               std::function<void(const std::string&)> lost);

// Calls `end` from the event loop once the system wishes the end, as long as the object lives.
std::unique_ptr<QObject> NotifyOfEnd(const EndSignal& end_signal, std::function<void()> end);

// Before a program is started: it has the system's wishes for itself.
void LetWishesThrough(QProcess& program);

}  // namespace logbook::host
