// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The host's side of the conversation: answers requests for items and does the jobs that the
// handshake cell calls for, with the faults that it was told to show.
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <functional>
#include <string>

#include "host/Cell.h"
#include "host/HostOptions.h"

namespace logbook::host {

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

class ControlPanel : public QObject {
  Q_OBJECT

 public:
  // The options must outlive the object. Lines for the operator go to "tell".
  ControlPanel(const QDBusConnection& bus, const HostOptions& options,
               std::function<void(const std::string&)> tell);

  // Takes the host's name on the bus and begins to watch the cell. False if the name is taken or
  // is none that the bus allows.
  bool Start();

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

  QDBusConnection bus_;
  const HostOptions& options_;
  std::function<void(const std::string&)> tell_;
  RequestObject requests_;
  Cell cell_;
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
