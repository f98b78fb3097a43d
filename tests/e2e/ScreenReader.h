// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Reads windows as a screen reader does: names, texts, states and places of controls as the program
// tells them to assistive technology over the bus. What it reports is what the user is told, not
// what the test knows of the program's inside.
#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <functional>
#include <memory>
#include <optional>
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

class ScreenReader : public QDBusVirtualObject {
 public:
  // Announces itself on the desktop's bus; a program started after that can be read.
  explicit ScreenReader(Desktop& desktop);
  ~ScreenReader() override;

  // All things in the windows of the program that can be read, outer before inner, in its order.
  // Empty while the program has not answered.
  std::vector<Readable> Read();
  // The first with this role and name that shows up in time.
  Readable WaitFor(const std::string& role, const std::string& name);

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override;

 private:
  void ReadInto(std::vector<Readable>& things, const QString& service, const QString& path);
  QString Service();

  QString address_;
  QDBusConnection bus_;
  QString service_;
};

}  // namespace logbook::e2e
