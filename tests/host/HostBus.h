// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The surroundings of a running host in a test: a bus of its own, the host's program on it, and a
// logbook's handshake cell that the test holds.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

namespace logbook::test {

// Lets events through until the condition holds. False if that takes longer than a minute.
bool Until(const std::function<bool()>& condition);

// A message bus for the life of the object.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();

  const QString& address() const { return address_; }
  // Ends the bus before its time.
  void Stop();

 private:
  QProcess daemon_;
  QString address_;
};

struct ProgramResult {
  int status = -1;
  std::string out, err;
};

// Runs a program to its end with the bus as session bus and the home as the logbook's home. The
// status is -1 if it crashes, cannot be started or takes longer than a minute.
ProgramResult RunProgram(const QString& program, const QStringList& arguments,
                         const std::string& home, const QString& bus_address = {});

// A host that runs until the object goes.
class RunningHost {
 public:
  // Starts "quorex-host run" with these arguments behind it, and waits until it is ready.
  RunningHost(const std::string& home, const QString& bus_address, const QStringList& arguments);
  ~RunningHost();

  // Asks it to end, and waits for that.
  void Terminate();
  // Waits for its end; the exit status, or -1 if it crashed or does not end.
  int Status();
  // What it has written to its standard output so far.
  std::string Output();
  // Waits until it has a child process that runs this program; the child's number as text, empty
  // if that does not happen.
  std::string Child(const std::string& program);

 private:
  QProcess process_;
  QByteArray output_;
};

// The other side: owns the logbook's name and the cell.
class LogbookPeer : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "com.norvane.Quorex.Cell")
  Q_PROPERTY(QString Text READ Text WRITE SetText)

 public:
  explicit LogbookPeer(const QString& bus_address);
  ~LogbookPeer() override;

  // Takes the logbook's name, so that hosts see the cell.
  void Appear();
  // Gives the name back.
  void Vanish();

  QString Text() const { return text_; }
  void SetText(const QString& text);

  // Every text that the cell has had since Appear, without the first.
  const std::vector<std::string>& history() const { return history_; }

  QDBusConnection& bus() { return bus_; }

 Q_SIGNALS:
  // After every change, before a peer that made it has its answer.
  void TextChanged();

 private:
  QDBusConnection bus_;
  QString text_ = QLatin1String("");
  std::vector<std::string> history_;
};

}  // namespace logbook::test
