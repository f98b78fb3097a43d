// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// The logbook's handshake cell as the host sees it: a text that comes and goes with the logbook.
// docs/host-link.md describes the values.
#pragma once

#include <QObject>
#include <QString>

namespace logbook::host {

class Cell : public QObject {
  Q_OBJECT

 public:
  // Looks for a logbook that is there already: Appeared follows if there is one.
  virtual void Watch() = 0;

  // Asks for the text; TextSeen follows, unless the logbook has none or has gone.
  virtual void Read() = 0;

  // Sets the text; Written follows when the logbook has it, Refused if it did not take it. Nothing
  // follows if the logbook has gone.
  virtual void Write(const QString& text) = 0;

 Q_SIGNALS:
  void Appeared();
  void Vanished();
  void TextSeen(const QString& text);
  void Written(const QString& text);
  void Refused();
};

}  // namespace logbook::host
