// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// A desktop of a test's own: virtual display, window manager and session bus, with a mouse and a
// keyboard whose events are real ones. Places inside a window are in pixels from the upper left
// corner of its inner area.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ChildProcess.h"

namespace logbook::e2e {

struct Point {
  int x = 0, y = 0;
  bool operator==(const Point&) const = default;
};

struct Place {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const Place&) const = default;
  Point Middle() const { return {x + width / 2, y + height / 2}; }
};

using WindowId = unsigned long;

// What a desktop is like.
struct DesktopKind {
  // Where the window manager puts new windows: in the middle, if they do not ask for a place; where
  // they ask, and nowhere near the middle if they do not; or dialogs into the upper left corner
  // whatever they ask for. But for the first one, panels along all edges take a part of the screen.
  enum class Manager { kCentres, kTakesWishes, kKnowsBetter };
  Manager manager = Manager::kCentres;
  int dots_per_inch = 96;  // from 192 on, the screen has twice the dots each way
  // The colours that the user has chosen for all programs.
  enum class Colours { kUsual, kDark, kHighContrast };
  Colours colours = Colours::kUsual;
};

class Desktop {
 public:
  // The programs that such a desktop is made of and this machine lacks; empty if it has all.
  static std::string Missing();

  // Starts display, bus and window manager; their working files go to a temporary folder.
  explicit Desktop(const DesktopKind& kind = {});
  ~Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  // What a program needs to appear on this desktop.
  const Environment& Variables() const { return variables_; }
  const std::string& BusAddress() const { return bus_address_; }
  // The processes whose answers a program on this desktop waits for: display and bus.
  std::vector<int> Servers() const { return {display_->Id(), bus_->Id()}; }
  // Native path of the temporary folder, removed with the object.
  const std::string& Folder() const { return folder_; }
  // A file name of its own in the temporary folder, for instance for a program's output.
  std::string NewFile(const std::string& name);

  // Windows on the screen, whatever they are and however short-lived.
  std::vector<WindowId> Windows();
  // Those whose title is this one, in no particular order.
  std::vector<WindowId> Windows(const std::string& title);
  // Waits for a window of this title, other than the given one, that is on top, has the keyboard
  // and has come to rest.
  WindowId WaitForWindow(const std::string& title, WindowId other_than = 0);
  // Goes to another of the window manager's desktops, counted from 0; windows stay where they are.
  void GoToDesktop(int number);
  // Moves the window's frame to this place on the screen.
  void Move(WindowId window, Point point);
  // Waits until the window is no longer on the screen.
  void WaitUntilGone(WindowId window);
  // Inner area of the window on the screen, without its frame. Moves the mouse there.
  Place PlaceOf(WindowId window);
  // The screen, and what the panels leave of it.
  Place Screen() const { return {0, 0, 1280 * Scale(), 1024 * Scale()}; }
  Place WorkArea() const;
  int Scale() const { return kind_.dots_per_inch / 192 + 1; }
  // Where a window of this size, its frame counted, stands in the middle of the work area's size,
  // whose own origin does not count. Halves go to the even number.
  Place Middle(const Place& outer) const;

  // Mouse. `key` is held down meanwhile, "ctrl" for instance.
  void Click(WindowId window, Point point, const std::string& key = "");
  void DoubleClick(WindowId window, Point point);
  // The same at a place on the screen.
  void ClickScreen(Point point, const std::string& key = "");
  void DoubleClickScreen(Point point);  // opens a window; where none comes, clicks again
  // Keyboard, into the window that has it. Keys by their names: "Escape", "Return", "alt+F4".
  void Key(const std::string& key);
  // Characters of a usual keyboard; a line feed is the Enter key.
  void Type(const std::string& text);

  // A picture of the whole screen, or of a window with all its inner area, as a PNG file.
  void TakePicture(const std::string& file);
  void TakePicture(WindowId window, const std::string& file);
  // Colour at a place on the screen, such as "#F0F0F0".
  std::string ColourAt(Point point);

 private:
  std::vector<WindowId> Search(const std::string& pattern);
  std::string XdoTool(const std::vector<std::string>& arguments);
  void ClickAt(std::vector<std::string> arguments, const std::string& key);
  void StartDisplay();
  void StartWindowManager();
  void ChooseColours();
  Place Geometry(WindowId window);
  bool HasKeyboard(WindowId window);

  const DesktopKind kind_;
  std::string folder_;
  Environment variables_;
  std::string bus_address_;
  int files_ = 0;
  std::unique_ptr<ChildProcess> display_, bus_, window_manager_;
};

// The folder of the build tree where tests leave their pictures.
std::string PictureFolder();

}  // namespace logbook::e2e
