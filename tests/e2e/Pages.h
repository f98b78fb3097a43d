// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Where things stand in the windows, reckoned from their sizes in twips at 15 twips to the pixel,
// and what a user does there. A page waits for its window when it is made.
#pragma once

#include <string>

#include "Desktop.h"

namespace logbook::e2e {

class MainPage {
 public:
  explicit MainPage(Desktop& desktop);

  WindowId window() const { return window_; }
  const Place& place() const { return place_; }

  enum class Button { kRecord, kDelete, kBrowse, kPrint, kArchive, kExit, kHelp };
  Place PlaceOf(Button button) const;
  void Press(Button button);

  // Clicks the header of a column, counted from 1.
  void ClickHeader(int column);
  // Clicks the first row of the list.
  void ClickFirstRow();
  // Clicks the close box in the window's frame.
  void Close();

 private:
  Desktop& desktop_;
  WindowId window_;
  Place place_;
};

class EditorPage {
 public:
  // `log_path` is the folder that the window's title names.
  EditorPage(Desktop& desktop, const std::string& log_path);

  WindowId window() const { return window_; }
  const Place& place() const { return place_; }

  void Tick(int index);
  void ClickComment();
  void PressOK();
  void PressCancel();

 private:
  Desktop& desktop_;
  WindowId window_;
  Place place_;
};

// A message box; it has the title of the main window unless it is told another one.
class MessagePage {
 public:
  MessagePage(Desktop& desktop, const MainPage& main);

  WindowId window() const { return window_; }
  // Answers by the button's access key; "OK" has none and is the Enter key's.
  void Yes();
  void No();
  void OK();

 private:
  void Answer(const std::string& key);

  Desktop& desktop_;
  WindowId window_;
};

class Workplace;

// Presses "Record Log" and waits for the new log's folder; returns its name.
std::string PressRecord(Workplace& work, MainPage& main);

}  // namespace logbook::e2e
