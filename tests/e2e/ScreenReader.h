// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Reads windows as a screen reader does: names, texts, states and places of controls as the program
// tells them to assistive technology over the bus. What it reports is what the user is told, not
// what the test knows of the program's inside.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QThread>
#include <memory>
#include <string>
#include <vector>

#include "Desktop.h"

namespace logbook::e2e {

// One thing on the screen.
struct Readable {
  std::string role;  // as the toolkit calls it: "button", "check box", "label", "table cell" ...
  std::string name;
  std::string text;     // of things that hold text
  bool active = false;  // a window that has the keyboard
  bool enabled = false;
  bool checked = false;
  bool selected = false;
  bool focused = false;
  Place place;  // on the screen
};

// What a program has told without being asked: a thing has the keyboard now ("focus"), or one of
// its states has come (1) or gone (0), under the state's name.
struct Told {
  QString path;
  std::string what;
  int value = 0;
};

class AccessibilityBus;

class ScreenReader : public QObject {
  Q_OBJECT

 public:
  // Announces itself on the desktop's bus; a program started after that can be read.
  explicit ScreenReader(Desktop& desktop);
  ~ScreenReader() override;

  // All things in the windows of the program that can be read, outer before inner, in its order.
  // Empty while the program has not answered.
  std::vector<Readable> Read();
  // Those in the window that has the keyboard.
  std::vector<Readable> ReadActive();
  // The first with this role and name that shows up in time.
  Readable WaitFor(const std::string& role, const std::string& name);

  // Has programs that are started after this tell what happens to their things.
  void Listen();
  // All that was told until now.
  const std::vector<Told>& Heard() const { return heard_; }
  void Forget() { heard_.clear(); }
  // The thing that was told last to have the keyboard; one without a role if none was or it is
  // gone.
  Readable Focused();

 private:
  Q_SLOT void Hear(const QDBusMessage& message);
  Readable ReadThing(const QString& service, const QString& path) const;
  QStringList Children(const QString& service, const QString& path) const;
  void ReadInto(std::vector<Readable>& things, const QString& service, const QString& path);
  QString Service();

  QString address_;
  QDBusConnection bus_;
  QThread thread_;  // of the answers to programs, which may come while one of them is asked
  std::unique_ptr<AccessibilityBus> answers_;
  QString service_;
  std::vector<Told> heard_;
};

}  // namespace logbook::e2e
