// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A hand that works the logbook from inside, where there is no display to send events to: a plug-in
// of the toolkit, which the real program loads when QT_QPA_GENERIC_PLUGINS names it.
//
// It takes one command a line from standard input and presses the buttons that the windows show:
//
//   record TEXT   Record Log, TEXT into the comment, OK
//   delete        all rows, Delete Log, Yes
//   exit          Exit
//
// and tells on standard output, a line each:
//
//   pressed       the button has been pressed, its handler is at work
//   done BYTES    the command is over; so many bytes of the heap are in use
//   message TEXT  a message box other than the question of Delete Log came, and was closed
//
// For trying the judge, it uses up memory, files and wake-ups at each "delete" if SOAK_PLANT is
// set.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QString>

class QWidget;

namespace logbook::soak {

class Hand : public QObject {
  Q_OBJECT

 public:
  Hand();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ReadCommands();
  void Obey(const QString& command);
  void Press(const QString& button);
  void Confirm(QWidget* window);
  void Plant();

  QSocketNotifier commands_;
  QByteArray read_;
  QString comment_;
  int wakes_ = 0;  // that are used up at each command
};

}  // namespace logbook::soak
