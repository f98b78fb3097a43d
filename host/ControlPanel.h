// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The host's side of the conversation about the handshake cell: does the jobs that the cell calls
// for, with the faults that it was told to show.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <string>

#include "host/HostOptions.h"
#include "host/Seat.h"

namespace logbook::host {

class ControlPanel : public QObject {
  Q_OBJECT

 public:
  // Seat and options must outlive the object. Lines for the operator go to "tell".
  ControlPanel(Seat& seat, const HostOptions& options,
               std::function<void(const std::string&)> tell);

  // Takes the host's name and begins to watch the cell. False with a reason if it cannot be had.
  bool Start(std::string& reason);

 Q_SIGNALS:
  void LogbookGone();

 private:
  void OnAppeared();
  void OnTextSeen(const QString& text);
  void OnWritten(const QString& text);
  // Does the job that the number calls for, if any.
  void Obey(double number);
  // Does the work after the time that a job takes, then releases the cell.
  void StartJob(const std::function<std::string()>& work);
  // Clears the cell, after holding it for a while if the host is to be busy.
  void Release();

  Seat& seat_;
  const HostOptions& options_;
  std::function<void(const std::string&)> tell_;
  Cell& cell_;
  // The host is at work or about to clear the cell, and what the cell reads is of no concern.
  bool holds_cell_ = false;
  // The host pretends to be busy since the logbook appeared. A logbook that has not noticed it yet
  // may ask for a job; the number is kept until the pretence ends.
  bool is_busy_at_start_ = false;
  double kept_job_ = 0;
  // Counts logbooks: a job that outlives its logbook ends without a word.
  int visit_ = 0;
};

}  // namespace logbook::host
